#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommonView/CancelableWork.h>
#include <KesCommonView/FileNamePattern.h>
#include <KesCommonView/GtkDialogs.h>
#include <KesCommonView/Window.h>

#include <array>
#include <atomic>
#include <thread>

namespace {

using Kes::DialogResult;
using KesTest::pressKey;

TEST(FileNamePatternTest, completesNamesWithoutExtension)
{
    using Case = std::array<const char*, 3>;
    for (const auto& [path, pattern, expected] : {
             Case{"/home/a.b/report", "*.abc", "/home/a.b/report.abc"},
             Case{"/d/report.ABC", "*.abc", "/d/report.ABC"},
             Case{"/d/report.", "*.abc", "/d/report.abc"},
             Case{"/d/Relay no. two", "*.abc", "/d/Relay no. two.abc"},
             Case{"/d/.hidden", "*.abc", "/d/.hidden.abc"},
             Case{"/d/Реле", "*.кес", "/d/Реле.кес"},
             Case{"/d/report", "*.*", "/d/report"},
             Case{"/d/report", "*.a;*.b", "/d/report"},
             Case{"/d/", "*.abc", "/d/"},
             Case{"", "*.abc", ""},
         })
        EXPECT_EQ(Kes::FileNamePattern::complete(path, pattern), expected) << path << " " << pattern;
    EXPECT_EQ(Kes::FileNamePattern::exchange("/d.abc/report.abc", "*.abc", "*.xyz"), "/d.abc/report.xyz");
    EXPECT_EQ(Kes::FileNamePattern::exchange("/d.abc/report", "*.abc", "*.xyz"), "/d.abc/report");
    EXPECT_EQ(Kes::FileNamePattern::exchange("/d/report.abc", "*.abc", "*"), "/d/report.abc");
    EXPECT_EQ(Kes::FileNamePattern::ignoreCase("*.aB1"), "*.[aA][bB]1");
}

class WindowOnScreen : public Kes::Window, public Kes::IView {};

/// Acts on the first visible dialog of a type, as a user would, from the dialog's own loop.
template <typename Dialog>
void whenShown(std::function<void(Dialog&)> act)
{
    Glib::signal_timeout().connect(
        [act] {
            for (auto* window : Gtk::Window::list_toplevels()) {
                auto* dialog = dynamic_cast<Dialog*>(window);
                if (dialog && dialog->get_mapped()) {
                    act(*dialog);
                    return false;
                }
            }
            return true;
        },
        10);
}

class GtkDialogsTest : public KesTest::GuiTest {
protected:
    Kes::GtkDialogs gtk;
};

TEST_F(GtkDialogsTest, questionIsModalOverItsParentAndBeginsOnCancel)
{
    WindowOnScreen parent;
    parent.show();
    whenShown<Gtk::MessageDialog>([&](auto& box) {
        EXPECT_EQ(box.get_transient_for(), &parent);
        EXPECT_TRUE(box.get_modal());
        EXPECT_EQ(box.get_title(), "Overcurrent");
        EXPECT_TRUE(box.get_widget_for_response(32)->is_focus());
        box.response(2);
    });
    EXPECT_EQ(gtk.showMessage({&parent, "Save?", "Overcurrent", DialogResult::YesNoCancel}),
              DialogResult::Yes);
}

TEST_F(GtkDialogsTest, escapeAndTheCloseButtonDecline)
{
    for (const auto& [buttons, answer] :
         {std::pair(DialogResult::Ok, DialogResult::Ok), std::pair(DialogResult::YesNo, DialogResult::No),
          std::pair(DialogResult::YesNoCancel, DialogResult::Cancel)}) {
        whenShown<Gtk::MessageDialog>([](auto& box) { pressKey(box, GDK_KEY_Escape); });
        EXPECT_EQ(gtk.showMessage({nullptr, "?", "", buttons}), answer);
        whenShown<Gtk::MessageDialog>([](auto& box) { box.response(Gtk::RESPONSE_DELETE_EVENT); });
        EXPECT_EQ(gtk.showMessage({nullptr, "?", "", buttons}), answer);
    }
}

TEST_F(GtkDialogsTest, workIsWaitedForAndEndsWhenTheUserCancels)
{
    auto scripted = Kes::DialogBackend::install(nullptr);
    WindowOnScreen parent;
    parent.show();
    const auto work = [](const Glib::RefPtr<Gio::Cancellable>& cancellable) {
        while (!cancellable->is_cancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
    for (const bool isEscape : {false, true}) {
        whenShown<Gtk::MessageDialog>([&](auto& box) {
            EXPECT_EQ(box.get_transient_for(), &parent);
            if (isEscape)
                pressKey(box, GDK_KEY_Escape);
            else
                box.get_widget_for_response(static_cast<int>(DialogResult::Cancel))->activate();
        });
        Kes::CancelableWork::run(&parent, "Wait", work);
    }
    std::atomic<bool> isSeen = false;
    whenShown<Gtk::MessageDialog>([&](auto&) { isSeen = true; });
    Kes::CancelableWork::run(&parent, "Wait", [&](const auto& cancellable) {
        while (!isSeen)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_FALSE(cancellable->is_cancelled());
    });
    EXPECT_TRUE(isSeen);
    Kes::DialogBackend::install(std::move(scripted));
}

/// How many signs a user sees, those that breaking the lines has added included.
int countGlyphs(Gtk::Label& label)
{
    int count = 0;
    auto* iterator = pango_layout_get_iter(label.get_layout()->gobj());
    do {
        if (const auto* run = pango_layout_iter_get_run_readonly(iterator))
            count += run->glyphs->num_glyphs;
    } while (pango_layout_iter_next_run(iterator));
    pango_layout_iter_free(iterator);
    return count;
}

TEST_F(GtkDialogsTest, anyTextIsShownToCopyAndFitsTheScreen)
{
    std::string lines;
    for (int i = 0; i < 300; ++i)
        lines += "Channel overload\n";
    for (const auto& text : {"Path:\n/" + std::string(3000, 'x'), '/' + std::string(200, 'x'), lines,
                             std::string("bad \xff byte")}) {
        whenShown<Gtk::MessageDialog>([&](auto& box) {
            const auto labels = KesTest::findWidgets(*box.get_message_area(), [](Gtk::Widget& widget) {
                return dynamic_cast<Gtk::Label*>(&widget) && widget.get_mapped();
            });
            ASSERT_FALSE(labels.empty());
            auto& shown = dynamic_cast<Gtk::Label&>(*labels[0]);
            EXPECT_TRUE(shown.get_selectable());
            EXPECT_EQ(shown.get_text().substr(0, 4), text.substr(0, 4));
            // A path that is broken shows no hyphens, which could be its own.
            if (text[0] == '/') {
                EXPECT_EQ(countGlyphs(shown), static_cast<int>(text.size()));
            }
            EXPECT_LT(box.get_height(), 600);
            EXPECT_LT(box.get_width(), 1024);
            box.response(16);
        });
        EXPECT_EQ(gtk.showMessage({nullptr, text, "", DialogResult::Ok}), DialogResult::Ok);
    }
}

class FileChooserTest : public GtkDialogsTest {
protected:
    KesTest::TemporaryHome home;
    Kes::FileRequest request{
        nullptr, "File manager", {{"*.abc", "Archive (*.abc)"}, {"*.xyz", "Other"}}, true};
};

/// The folder is read by the main loop; the answer is given when it has been. GTK stumbles over a chooser
/// that goes before.
void answerWhen(std::function<bool()> isReady, std::function<void()> answer)
{
    Glib::signal_timeout().connect(
        [isReady, answer] {
            const bool ready = isReady();
            if (ready)
                answer();
            return !ready;
        },
        50);
}

void acceptWhen(Gtk::FileChooserDialog& dialog, const std::function<bool()>& isReady)
{
    answerWhen(isReady, [&dialog] { dialog.response(Gtk::RESPONSE_ACCEPT); });
}

TEST_F(FileChooserTest, completedNameIsAskedForBeforeItIsReplaced)
{
    KesTest::writeFile(home.getPath() / "old.abc", "kept");
    const auto type = [this](const char* name, std::size_t filter = 0) {
        whenShown<Gtk::FileChooserDialog>([this, name, filter](auto& dialog) {
            dialog.set_filter(dialog.list_filters()[filter]);
            dialog.set_current_folder(home.getPath().string());
            dialog.set_current_name(name);
            acceptWhen(dialog, [&dialog, this] { return dialog.get_current_folder() == home.getPath(); });
        });
    };
    type("old");
    dialogs.answer(DialogResult::No, [&] { type("new", 1); });
    EXPECT_EQ(gtk.chooseFile(request), home.file("new.xyz"));
    ASSERT_EQ(dialogs.getMessages().size(), 1u);
    EXPECT_EQ(dialogs.getMessages()[0].text,
              "The file already exists. Replace it?\n\nPath:\n" + home.file("old.abc"));
    EXPECT_EQ(dialogs.getMessages()[0].buttons, DialogResult::YesNo);

    type("old.abc");
    dialogs.answer(DialogResult::Yes);
    EXPECT_EQ(gtk.chooseFile(request), home.file("old.abc"));
    request.suggestion = home.file("offered.abc");
    type("offered.abc", 1);
    EXPECT_EQ(gtk.chooseFile(request), home.file("offered.xyz"));
    type("typed.abc", 1);
    EXPECT_EQ(gtk.chooseFile(request), home.file("typed.abc"));
    whenShown<Gtk::FileChooserDialog>([this](auto& dialog) {
        answerWhen([&dialog, this] { return dialog.get_current_folder() == home.getPath(); },
                   [&dialog] { pressKey(dialog, GDK_KEY_Escape); });
    });
    EXPECT_EQ(gtk.chooseFile(request), "");

    // What is opened is taken as it is.
    KesTest::writeFile(home.getPath() / "plain", "x");
    request.save = false;
    whenShown<Gtk::FileChooserDialog>([&](auto& dialog) {
        dialog.set_filename(home.file("plain"));
        acceptWhen(dialog, [&] { return !dialog.get_filename().empty(); });
    });
    EXPECT_EQ(gtk.chooseFile(request), home.file("plain"));
}

} // namespace
