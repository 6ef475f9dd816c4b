#include "ShellTest.h"

#include <KesCommon/DesktopOpener.h>
#include <KesProgram/shell/HelpMenuPresenter.h>
#include <KesProgram/shell/ProgramAboutPresenter.h>

#include <gtkmm.h>

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

    std::vector<std::string> opened;

private:
    Kes::DesktopOpener::Backend _previous;
};

class WindowsTest : public ShellTest {
protected:
    /// The windows on the screen over the program's own.
    std::vector<Gtk::Window*> windows()
    {
        auto found = Gtk::Window::list_toplevels();
        std::erase_if(found, [this](Gtk::Window* window) {
            return !window->get_visible() || window->get_transient_for() != &shell.getWindow();
        });
        return found;
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
    const std::string report = home.file("report.html");
    writeFile(report, "<html/>");
    const Kes::Result fine = true;
    const auto failure = Kes::Result::failure("No application");
    const struct {
        std::string path;
        Kes::Result answer;
        const char* text;
    } cases[] = {{"", fine, "Error creating file."},
                 {report, fine, nullptr},
                 {report, failure, "No application"},
                 {home.file("missing.html"), fine, "missing.html"}};
    for (const auto& [path, answer, text] : cases) {
        SCOPED_TRACE(path);
        const Desktop desktop(answer);
        model.report = path;
        dialogs.clear();
        if (text)
            dialogs.answer(DialogResult::Ok);
        shell.requestReport();
        EXPECT_EQ(desktop.opened.size(), path == report ? 1U : 0U);
        ASSERT_EQ(dialogs.getMessages().size(), text ? 1U : 0U);
        if (text) {
            EXPECT_THAT(dialogs.getTexts()[0], HasSubstr(text));
            EXPECT_EQ(dialogs.getMessages()[0].title, "");
            EXPECT_EQ(dialogs.getMessages()[0].buttons, DialogResult::Ok);
            EXPECT_EQ(dialogs.getMessages()[0].parent, shell.getView());
        }
    }
}

TEST_F(WindowsTest, TestObjectWindowOpensOnceAndAgainAfterClosing)
{
    open();
    shell.requestTestObject();
    EXPECT_THAT(windows(), ElementsAre()) << "without a test object there is no window";
    makeTestObject();
    shell.requestTestObject();
    shell.requestTestObject();
    ASSERT_EQ(windows().size(), 1U);
    EXPECT_EQ(windows()[0]->get_title(), "Test object");
    EXPECT_EQ(model.signalRunningChanged.size(), 1U);
    windows()[0]->close();
    EXPECT_TRUE(waitFor([this] { return windows().empty(); }));
    EXPECT_EQ(model.signalRunningChanged.size(), 0U);
    shell.requestTestObject();
    EXPECT_EQ(windows().size(), 1U);
}

TEST_F(WindowsTest, TestObjectIsReadOnlyWhileATestRuns)
{
    makeTestObject();
    open();
    shell.requestTestObject();
    auto* window = windows().at(0);
    runPendingEvents();
    EXPECT_TRUE(isEditable(*window));
    model.startRun();
    EXPECT_TRUE(waitFor([&] { return !isEditable(*window); }));
    model.endRun();
    EXPECT_TRUE(waitFor([&] { return isEditable(*window); }));

    window->close();
    EXPECT_TRUE(waitFor([this] { return windows().empty(); }));
    model.startRun();
    shell.requestTestObject();
    window = windows().at(0);
    EXPECT_TRUE(waitFor([&] { return !isEditable(*window); })) << "opened during a run";
    // The switch back is queued when the window is closed.
    onAnotherThread([this] { model._setCanProgramStop(false); });
    window->close();
    EXPECT_TRUE(waitFor([this] { return windows().empty(); }));
    model._setCanProgramStop(true);
}

TEST_F(WindowsTest, ConfirmedHardwareSettingsBecomeTheModels)
{
    open();
    auto* before = model.getHardware();
    shell.requestHardware();
    shell.requestHardware();
    ASSERT_EQ(windows().size(), 1U) << "the second request opened another window";
    for (auto* button : findWidgets<Gtk::Button>(*windows()[0]))
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
    ASSERT_EQ(windows().size(), 1U);
    auto& about = dynamic_cast<Gtk::AboutDialog&>(*windows()[0]);
    EXPECT_EQ(about.get_program_name(), "Shell test");
    EXPECT_EQ(about.get_version(), "2.5");
    about.close();
    runPendingEvents();
    KesProgram::ProgramAboutPresenter own(model);
    EXPECT_EQ(dynamic_cast<Gtk::AboutDialog&>(*own.getView()).get_program_name(), "Shell test");

    dialogs.answer(DialogResult::Ok);
    dynamic_cast<Gtk::MenuItem&>(*items.at(1)).activate();
    ASSERT_EQ(dialogs.getMessages().size(), 1U);
    EXPECT_THAT(dialogs.getTexts()[0], HasSubstr("Error opening help file:\n "));
    EXPECT_EQ(dialogs.getMessages()[0].parent, shell.getView());
}

} // namespace

} // namespace KesTest
