#include "ShellTest.h"

#include <KesCommon/DesktopOpener.h>
#include <KesProgram/shell/HelpMenuPresenter.h>
#include <KesProgram/shell/ProgramAboutPresenter.h>

#include <gmock/gmock.h>
#include <gtkmm/aboutdialog.h>
#include <gtkmm/button.h>
#include <gtkmm/entry.h>
#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>

#include <thread>

namespace KesTest {

namespace {

using Kes::DialogResult;
using testing::ElementsAre;
using testing::HasSubstr;

/// Stands for the desktop.
class Desktop {
public:
    explicit Desktop(Kes::Result answer)
        : _previous(Kes::DesktopOpener::replace([this, answer](const std::string& path) {
              opened.push_back(path);
              return answer;
          }))
    {}
    ~Desktop() { Kes::DesktopOpener::replace(std::move(_previous)); }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    std::vector<std::string> opened;

private:
    Kes::DesktopOpener::Backend _previous;
};

class WindowsTest : public ShellTest {
protected:
    static Gtk::Window* findWindow(const std::string& title)
    {
        for (auto* window : Gtk::Window::list_toplevels())
            if (window->get_visible() && window->get_title() == title)
                return window;
        return nullptr;
    }

    void makeTestObject()
    {
        model.testObject = KesTree::Node::group("relay", {"Relay", "Реле"});
        model.testObject->add(
            KesTree::Node::number("setting", {"Setting", "Уставка"}, {"A", "А"}, 5, 0, 100));
    }

    /// Whether the user can change something in the window.
    static bool isEditable(Gtk::Widget& window)
    {
        for (auto* entry : findWidgets<Gtk::Entry>(window))
            if (entry->is_sensitive() && entry->get_editable())
                return true;
        return false;
    }
};

TEST_F(WindowsTest, ReportIsOpenedOrItsFailureShown)
{
    open();
    dialogs.answer(DialogResult::Ok);
    shell.requestReport();
    EXPECT_THAT(dialogs.getTexts(), ElementsAre("Error creating file."));
    EXPECT_EQ(dialogs.getMessages()[0].title, "");
    EXPECT_EQ(dialogs.getMessages()[0].buttons, DialogResult::Ok);
    EXPECT_EQ(dialogs.getMessages()[0].parent, shell.getView());

    model.report = home.file("report.html");
    writeFile(model.report, "<html/>");
    {
        const Desktop desktop(true);
        shell.requestReport();
        EXPECT_THAT(desktop.opened, ElementsAre(model.report));
    }
    {
        const Desktop desktop(Kes::Result::failure("No application"));
        dialogs.answer(DialogResult::Ok);
        shell.requestReport();
        EXPECT_THAT(dialogs.getTexts().back(), HasSubstr("No application"));
    }
    model.report = home.file("missing.html");
    const Desktop desktop(true);
    dialogs.answer(DialogResult::Ok);
    shell.requestReport();
    EXPECT_THAT(desktop.opened, ElementsAre());
    EXPECT_EQ(dialogs.getMessages().size(), 3U);
}

TEST_F(WindowsTest, TestObjectWindowOpensOnceAndAgainAfterClosing)
{
    open();
    shell.requestTestObject();
    EXPECT_EQ(findWindow("Test object"), nullptr) << "without a test object there is no window";
    makeTestObject();
    shell.requestTestObject();
    auto* first = findWindow("Test object");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->get_transient_for(), &shell.getWindow());
    shell.requestTestObject();
    EXPECT_EQ(findWindow("Test object"), first);
    EXPECT_EQ(model.signalRunningChanged.size(), 1U);
    first->close();
    EXPECT_TRUE(waitFor([] { return !findWindow("Test object"); }));
    EXPECT_EQ(model.signalRunningChanged.size(), 0U);
    shell.requestTestObject();
    EXPECT_NE(findWindow("Test object"), nullptr);
}

TEST_F(WindowsTest, TestObjectIsReadOnlyWhileATestRuns)
{
    makeTestObject();
    open();
    shell.requestTestObject();
    auto& window = *findWindow("Test object");
    runPendingEvents();
    EXPECT_TRUE(isEditable(window));
    model.startRun();
    EXPECT_TRUE(waitFor([&] { return !isEditable(window); }));
    model.endRun();
    EXPECT_TRUE(waitFor([&] { return isEditable(window); }));
}

TEST_F(WindowsTest, TestObjectWindowOpenedDuringARunIsReadOnly)
{
    makeTestObject();
    open();
    model.startRun();
    shell.requestTestObject();
    auto& window = *findWindow("Test object");
    EXPECT_TRUE(waitFor([&] { return !isEditable(window); }));
    // The switch back is queued when the window is closed.
    std::thread([this] { model._setCanProgramStop(false); }).join();
    window.close();
    EXPECT_TRUE(waitFor([] { return !findWindow("Test object"); }));
    model._setCanProgramStop(true);
}

TEST_F(WindowsTest, ConfirmedHardwareSettingsBecomeTheModels)
{
    open();
    auto* before = model.getHardware();
    shell.requestHardware();
    shell.requestHardware();
    std::vector<Gtk::Window*> opened;
    for (auto* window : Gtk::Window::list_toplevels())
        if (window->get_visible() && window->get_transient_for() == &shell.getWindow())
            opened.push_back(window);
    ASSERT_EQ(opened.size(), 1U) << "the second request opened another window";
    EXPECT_THAT(record.take(), ElementsAre());
    for (auto* button : findWidgets<Gtk::Button>(*opened[0]))
        if (button->get_label() == "OK")
            button->clicked();
    EXPECT_TRUE(waitFor([this] { return record.has("hardware changed"); }));
    EXPECT_NE(model.getHardware(), before);
}

TEST_F(WindowsTest, HelpMenuShowsHelpAndAbout)
{
    open();
    shell.setPackageVersion("2.5");
    KesProgram::HelpMenuPresenter menu(&shell, model);
    const auto items = dynamic_cast<Gtk::MenuItem&>(*menu.getView()).get_submenu()->get_children();
    dynamic_cast<Gtk::MenuItem&>(*items.at(0)).activate();
    Gtk::AboutDialog* about = nullptr;
    for (auto* window : Gtk::Window::list_toplevels())
        if (window->get_visible() && dynamic_cast<Gtk::AboutDialog*>(window))
            about = dynamic_cast<Gtk::AboutDialog*>(window);
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(about->get_program_name(), "Shell test");
    EXPECT_EQ(about->get_version(), "2.5");
    about->close();
    runPendingEvents();

    dialogs.answer(DialogResult::Ok);
    dynamic_cast<Gtk::MenuItem&>(*items.at(1)).activate();
    ASSERT_EQ(dialogs.getMessages().size(), 1U);
    EXPECT_THAT(dialogs.getTexts()[0], HasSubstr("Error opening help file:\n "));
    EXPECT_EQ(dialogs.getMessages()[0].parent, shell.getView());
}

TEST_F(WindowsTest, AboutPresenterNamesTheProgram)
{
    KesProgram::ProgramAboutPresenter about(model);
    EXPECT_EQ(dynamic_cast<Gtk::AboutDialog&>(*about.getView()).get_program_name(), "Shell test");
}

} // namespace

} // namespace KesTest
