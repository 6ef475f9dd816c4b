#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Language.h>
#include <KesCommon/SignalGate.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/DialogView.h>
#include <KesCommonView/FileDialogPresenter.h>
#include <KesCommonView/FileNamePattern.h>
#include <KesCommonView/GtkDialogs.h>
#include <KesCommonView/UnattendedDialogs.h>
#include <KesCommonView/Window.h>

#include <gdk/gdkkeysyms.h>
#include <glibmm/main.h>
#include <gtkmm/button.h>
#include <gtkmm/filechooserdialog.h>
#include <gtkmm/label.h>
#include <gtkmm/messagedialog.h>

namespace {

using Kes::DialogResult;
using KesTest::findWidgets;
using KesTest::pressKey;

TEST(DialogResultTest, decliningAnswerLosesNothing)
{
    EXPECT_EQ(decliningAnswer(DialogResult::YesNoCancel), DialogResult::Cancel);
    EXPECT_EQ(decliningAnswer(DialogResult::YesNo), DialogResult::No);
    EXPECT_EQ(decliningAnswer(DialogResult::Ok), DialogResult::Ok);
    EXPECT_EQ(static_cast<unsigned>(DialogResult::YesNoCancel), 38u);
    EXPECT_EQ(static_cast<unsigned>(DialogResult::YesNo), 6u);
    EXPECT_EQ(static_cast<unsigned>(DialogResult::Ok), 16u);
}

TEST(FileNamePatternTest, completesNamesWithoutExtension)
{
    struct Case {
        const char* path;
        const char* pattern;
        const char* expected;
    };
    for (const auto& [path, pattern, expected] : {
             Case{"/home/a.b/report", "*.abc", "/home/a.b/report.abc"},
             Case{"/d/report.abc", "*.abc", "/d/report.abc"},
             Case{"/d/report.ABC", "*.abc", "/d/report.ABC"},
             Case{"/d/report.txt", "*.abc", "/d/report.txt"},
             Case{"/d/report.", "*.abc", "/d/report.abc"},
             Case{"/d/Feeder 2.1", "*.abc", "/d/Feeder 2.1.abc"},
             Case{"/d/2024.11.21", "*.abc", "/d/2024.11.21.abc"},
             Case{"/d/Relay no. two", "*.abc", "/d/Relay no. two.abc"},
             Case{"/d/.hidden", "*.abc", "/d/.hidden.abc"},
             Case{"/d/Реле.кес", "*.abc", "/d/Реле.кес"},
             Case{"/d/Реле", "*.кес", "/d/Реле.кес"},
             Case{"/d/report", "*", "/d/report"},
             Case{"/d/report", "*.*", "/d/report"},
             Case{"/d/report", "*.", "/d/report"},
             Case{"/d/report", "*.a;*.b", "/d/report"},
             Case{"/d/report", "", "/d/report"},
             Case{"/d/", "*.abc", "/d/"},
             Case{"", "*.abc", ""},
             Case{"/d/2.1", "*.1", "/d/2.1"},
         })
        EXPECT_EQ(Kes::FileNamePattern::complete(path, pattern), expected) << path << " " << pattern;
    EXPECT_EQ(Kes::FileNamePattern::ignoreCase("*.aB1"), "*.[aA][bB]1");
}

TEST(UnattendedDialogsTest, writesDeclinesAndRemembers)
{
    Kes::UnattendedDialogs dialogs;
    testing::internal::CaptureStderr();
    EXPECT_EQ(dialogs.showMessage({nullptr, "Перегрев", "КЕСТО", DialogResult::Ok}), DialogResult::Ok);
    EXPECT_EQ(dialogs.showMessage({nullptr, "Save?", "", DialogResult::YesNoCancel}), DialogResult::Cancel);
    EXPECT_EQ(dialogs.chooseFile({nullptr, "File manager", {}, true}), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "КЕСТО: Перегрев\nSave?\nAnswer: Cancel\nFile manager: No file is chosen\n");
    EXPECT_THAT(dialogs.getTexts(), testing::ElementsAre("Перегрев", "Save?"));
    testing::internal::CaptureStderr();
    for (int i = 0; i < 200; ++i)
        dialogs.showMessage({nullptr, std::to_string(i), "", DialogResult::Ok});
    testing::internal::GetCapturedStderr();
    EXPECT_LE(dialogs.getTexts().size(), 100u);
    EXPECT_EQ(dialogs.getTexts().back(), "199");
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

std::vector<std::string> getCaptions(Gtk::Dialog& dialog)
{
    std::vector<std::string> captions;
    for (auto* button : findWidgets<Gtk::Button>(*dialog.get_action_area()))
        captions.push_back(button->get_label());
    return captions;
}

class GtkDialogsTest : public KesTest::GuiTest {
protected:
    Kes::GtkDialogs gtk;
};

TEST_F(GtkDialogsTest, questionIsModalOverItsParentAndInTheLanguageOfTheProcess)
{
    WindowOnScreen parent;
    parent.show();
    whenShown<Gtk::MessageDialog>([&](auto& box) {
        EXPECT_EQ(box.get_transient_for(), &parent);
        EXPECT_TRUE(box.get_modal());
        EXPECT_EQ(box.get_title(), "Overcurrent");
        EXPECT_THAT(getCaptions(box), testing::ElementsAre("_Cancel", "_No", "_Yes"));
        EXPECT_TRUE(box.get_widget_for_response(32)->has_default());
        EXPECT_TRUE(box.get_widget_for_response(32)->is_focus());
        box.response(2);
    });
    EXPECT_EQ(gtk.showMessage({&parent, "Save?", "Overcurrent", DialogResult::YesNoCancel}),
              DialogResult::Yes);

    lng::language = lng::Russian;
    whenShown<Gtk::MessageDialog>([&](auto& box) {
        EXPECT_THAT(getCaptions(box), testing::ElementsAre("_Нет", "_Да"));
        box.response(4);
    });
    EXPECT_EQ(gtk.showMessage({nullptr, "Save?", "", DialogResult::YesNo}), DialogResult::No);
}

TEST_F(GtkDialogsTest, escapeAndTheCloseButtonDecline)
{
    for (const auto buttons : {DialogResult::Ok, DialogResult::YesNo, DialogResult::YesNoCancel}) {
        whenShown<Gtk::MessageDialog>([](auto& box) { pressKey(box, GDK_KEY_Escape); });
        EXPECT_EQ(gtk.showMessage({nullptr, "?", "", buttons}), decliningAnswer(buttons));
        whenShown<Gtk::MessageDialog>([](auto& box) { box.response(Gtk::RESPONSE_DELETE_EVENT); });
        EXPECT_EQ(gtk.showMessage({nullptr, "?", "", buttons}), decliningAnswer(buttons));
    }
}

TEST_F(GtkDialogsTest, anyTextIsShownToCopyAndFitsTheScreen)
{
    const std::string path(3000, 'x');
    std::string lines;
    for (int i = 0; i < 300; ++i)
        lines += "Channel overload\n";
    for (const auto& text : {std::string("Path:\n/") + path, lines, std::string("bad \xff byte")}) {
        whenShown<Gtk::MessageDialog>([&](auto& box) {
            Gtk::Label* shown = nullptr;
            for (auto* label : findWidgets<Gtk::Label>(*box.get_message_area()))
                shown = !shown && label->get_mapped() ? label : shown;
            ASSERT_NE(shown, nullptr);
            EXPECT_TRUE(shown->get_selectable());
            EXPECT_EQ(shown->get_text().substr(0, 4), text.substr(0, 4));
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
    Kes::FileRequest save{nullptr, "File manager", {{"*.abc", "Archive (*.abc)"}, {"*.xyz", "Other"}}, true};
};

void choose(Gtk::FileChooserDialog& dialog, const std::string& folder, const std::string& name)
{
    dialog.set_current_folder(folder);
    dialog.set_current_name(name);
    // The folder is read by the main loop; the answer is looked at when it has been.
    Glib::signal_timeout().connect(
        [&dialog, folder] {
            if (dialog.get_current_folder() != folder)
                return true;
            dialog.response(Gtk::RESPONSE_ACCEPT);
            return false;
        },
        50);
}

TEST_F(FileChooserTest, completedNameIsAskedForBeforeItIsReplaced)
{
    KesTest::writeFile(home.getPath() / "old.abc", "kept");
    whenShown<Gtk::FileChooserDialog>([&](auto& dialog) {
        EXPECT_EQ(dialog.get_title(), "File manager");
        const auto filters = dialog.list_filters();
        ASSERT_EQ(filters.size(), 2u);
        EXPECT_EQ(filters[0]->get_name(), "Archive (*.abc)");
        choose(dialog, home.getPath(), "old");
    });
    dialogs.answer(DialogResult::No, [&] {
        whenShown<Gtk::FileChooserDialog>([&](auto& dialog) { choose(dialog, home.getPath(), "new"); });
    });
    EXPECT_EQ(gtk.chooseFile(save), home.file("new.abc"));
    ASSERT_EQ(dialogs.getMessages().size(), 1u);
    EXPECT_EQ(dialogs.getMessages()[0].text,
              "The file already exists. Replace it?\n\nPath:\n" + home.file("old.abc"));
    EXPECT_EQ(dialogs.getMessages()[0].buttons, DialogResult::YesNo);

    whenShown<Gtk::FileChooserDialog>([&](auto& dialog) { choose(dialog, home.getPath(), "old.abc"); });
    dialogs.answer(DialogResult::Yes);
    EXPECT_EQ(gtk.chooseFile(save), home.file("old.abc"));
}

TEST_F(FileChooserTest, extensionIsThatOfTheChosenFilterAndCancelGivesNothing)
{
    whenShown<Gtk::FileChooserDialog>([&](auto& dialog) {
        dialog.set_filter(dialog.list_filters()[1]);
        choose(dialog, home.getPath(), "new");
    });
    EXPECT_EQ(gtk.chooseFile(save), home.file("new.xyz"));
    whenShown<Gtk::FileChooserDialog>([](auto& dialog) { pressKey(dialog, GDK_KEY_Escape); });
    EXPECT_EQ(gtk.chooseFile(save), "");
}

TEST_F(FileChooserTest, openingTakesTheFileAsItIs)
{
    KesTest::writeFile(home.getPath() / "plain", "x");
    auto open = save;
    open.save = false;
    whenShown<Gtk::FileChooserDialog>([&](auto& dialog) {
        dialog.set_filename(home.file("plain"));
        Glib::signal_timeout().connect(
            [&] {
                if (dialog.get_filename().empty())
                    return true;
                dialog.response(Gtk::RESPONSE_ACCEPT);
                return false;
            },
            50);
    });
    EXPECT_EQ(gtk.chooseFile(open), home.file("plain"));
}

class DialogPresenterTest : public KesTest::GuiTest {};

TEST_F(DialogPresenterTest, reachTheInstalledBackendWithoutTheGate)
{
    WindowOnScreen parent;
    dialogs.answer(DialogResult::No, [] { EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread()); });
    dialogs.answer(DialogResult::Ok);
    dialogs.answerFile("/tmp/a");
    Kes::SignalGate::Guard gate;
    EXPECT_EQ(Kes::DialogPresenter::show(&parent, "Text", "Title", DialogResult::YesNo), DialogResult::No);
    EXPECT_EQ(Kes::DialogView::show(nullptr, "Other", "", DialogResult::Ok), DialogResult::Ok);
    EXPECT_EQ(Kes::FileDialogPresenter().show(&parent, "Files", {{"*.a", "A"}}, true), "/tmp/a");
    EXPECT_TRUE(Kes::SignalGate::isHeldByThisThread());
    EXPECT_EQ(dialogs.getMessages()[0].parent, &parent);
    EXPECT_EQ(dialogs.getMessages()[0].title, "Title");
    EXPECT_THAT(dialogs.getTexts(), testing::ElementsAre("Text", "Other"));
    EXPECT_TRUE(dialogs.getFiles()[0].save);
}

} // namespace
