#include "ShellTest.h"

#include <KesCommon/DesktopOpener.h>
#include <KesProgram/shell/ToolsToolbarPresenter.h>

namespace {

using namespace KesTest;
using Kes::DialogResult;
using testing::ElementsAre;

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
};

TEST_F(WindowsTest, FailuresOfTheReportAreShown)
{
    open();
    dialogs.answer(DialogResult::Ok);
    shell.requestReport();
    model.report = home.file("report.html");
    writeFile(model.report, "<html/>");
    auto previous = Kes::DesktopOpener::replace([](const auto&) { return Kes::Result::failure("Nobody"); });
    dialogs.answer(DialogResult::Ok);
    shell.requestReport();
    Kes::DesktopOpener::replace(std::move(previous));
    EXPECT_THAT(dialogs.getTexts(), ElementsAre("Error creating file.", "Nobody"));
}

TEST_F(WindowsTest, ToolbarHasTheButtonsThatTheProgramHasAUseFor)
{
    open();
    for (const bool hasTestObject : {false, true}) {
        for (const bool hasReport : {false, true}) {
            model.writesReports = hasReport;
            KesProgram::ToolsToolbarPresenter tools(&shell, hasTestObject);
            std::vector<std::string> expected, names;
            if (hasTestObject)
                expected.push_back("Test Object");
            if (hasReport)
                expected.push_back("Report");
            for (auto* button : dynamic_cast<Gtk::Toolbar&>(*tools.getView()).get_children())
                names.push_back(dynamic_cast<Gtk::ToolButton&>(*button).get_label());
            EXPECT_EQ(names, expected);
        }
    }
}

TEST_F(WindowsTest, TestObjectWindowOpensOnceAndAgainAfterClosing)
{
    open();
    shell.requestTestObject();
    EXPECT_THAT(windows(), ElementsAre()) << "without a test object there is no window";
    model.testObject = KesTree::Node::group("relay", {"Test.relay", "Relay", "Реле"});
    shell.requestTestObject();
    shell.requestTestObject();
    ASSERT_EQ(windows().size(), 1U);
    EXPECT_EQ(windows()[0]->get_title(), "Test object");
    EXPECT_EQ(model.signalRunningChanged.size(), 1U);
    // What a run makes of the window is queued when it is closed.
    onAnotherThread([this] { model.signalRunningChanged.emit(); });
    windows()[0]->close();
    EXPECT_TRUE(waitFor([this] { return windows().empty(); }));
    EXPECT_EQ(model.signalRunningChanged.size(), 0U);
    shell.requestTestObject();
    EXPECT_EQ(windows().size(), 1U);
}

TEST_F(WindowsTest, TestObjectIsReadOnlyDuringARunAlsoWhenItIsOpenedThen)
{
    open();
    model.testObject = KesTree::Node::group("relay", {"Test.relay", "Relay", "Реле"});
    model.testObject->add(KesTree::Node::text("name", {"Test.name", "Name", "Имя"}, ""));
    model.startRun();
    shell.requestTestObject();
    ASSERT_EQ(windows().size(), 1U);
    const auto isEditable = [this] {
        const auto entries = findWidgets<Gtk::Entry>(*windows()[0]);
        return !entries.empty() && entries[0]->get_editable() && entries[0]->get_sensitive();
    };
    runPendingEvents();
    EXPECT_FALSE(isEditable());
    model.stopTest();
    EXPECT_TRUE(waitFor(isEditable));
    model.startRun();
    EXPECT_TRUE(waitFor([&] { return !isEditable(); }));
}

TEST_F(WindowsTest, ProgramThatClosesTakesItsWindowsAlong)
{
    open();
    model.testObject = KesTree::Node::group("relay", {"Test.relay", "Relay", "Реле"});
    shell.requestTestObject();
    shell.requestHardware();
    EXPECT_EQ(windows().size(), 2U);
    model.signalClosing.connect([this] { EXPECT_THAT(windows(), ElementsAre()); });
    shell.requestClose();
    EXPECT_TRUE(waitFor([this] { return isClosed; }));
    EXPECT_FALSE(isWindowSeen());
}

} // namespace
