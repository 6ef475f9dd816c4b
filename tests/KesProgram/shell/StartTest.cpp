#include "ShellTest.h"

#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/shell/ProgramMainMenuPresenter.h>

#include <gtkmm/grid.h>

namespace KesTest {

namespace {

using testing::ElementsAre;

class StartTest : public ShellTest {
protected:
    Gtk::Widget* at(int row) { return findWidgets<Gtk::Grid>(shell.getWindow()).at(0)->get_child_at(0, row); }
};

TEST_F(StartTest, EverythingHappensInOrder)
{
    model.extension = "abc";
    EXPECT_EQ(shell.getView(), nullptr);
    EXPECT_EQ(shell._getMenuBar(), nullptr);
    writeFile(shell._getXmlConfigFullPath(), "<root><Rectangle>30;40;700;500</Rectangle></root>");
    // What the model says before there is a window is not lost.
    dialogs.answer(Kes::DialogResult::Ok);
    shell.onHook = [this](const std::string& hook) {
        if (hook == "before init" || hook == "load config") {
            EXPECT_EQ(model.getArchiveManager(), nullptr);
        } else if (hook == "create status bar") {
            EXPECT_EQ(model.signalFinished.size(), 1U);
            EXPECT_EQ(model.signalClosing.size(), 1U);
            EXPECT_EQ(model.signalClosed.size(), 1U);
            EXPECT_EQ(model.signalMessage.size(), 1U);
            EXPECT_NE(shell.getArchiveManagerPresenter(), nullptr);
            EXPECT_NE(shell._getMenuBar(), nullptr);
            EXPECT_EQ(shell.getView(), nullptr);
            model.signalMessage.emit("early");
        } else if (hook == "init") {
            EXPECT_EQ(shell.getWindow().get_title(), "Shell test");
            EXPECT_EQ(at(0), dynamic_cast<Gtk::Widget*>(shell._getMenuBar()->getView()));
            ASSERT_NE(at(2), nullptr);
            EXPECT_TRUE(at(2)->get_style_context()->has_class("statusbar"));
            // A program may set a size of its own; the saved one comes after it.
            shell._getProgramView()->setRectangle({10, 10, 300, 200});
        } else {
            EXPECT_EQ(isWindowSeen(), hook == "opened") << hook;
        }
    };
    shell.open(nullptr);
    EXPECT_THAT(record.take(), ElementsAre("before init", "load config", "model init", "hardware changed",
                                           "create status bar", "init", "eval open", "opened"));
    EXPECT_TRUE(waitFor([this] {
        return shell._getProgramView()->getRectangle() == Kes::RectangleF{30, 40, 700, 500};
    }));
    EXPECT_TRUE(waitFor([this] { return !dialogs.getMessages().empty(); }));
    EXPECT_THAT(dialogs.getTexts(), ElementsAre("early"));
    EXPECT_EQ(dialogs.getMessages()[0].parent, shell.getView());
    shell.onHook = {};
}

TEST_F(StartTest, SecondOpenOnlyShowsTheWindow)
{
    open();
    shell.getWindow().hide();
    shell.open(nullptr);
    EXPECT_THAT(record.take(), ElementsAre("eval open", "opened"));
    EXPECT_TRUE(isWindowSeen());
    EXPECT_EQ(model.signalMessage.size(), 1U);
}

TEST_F(StartTest, ProgramWithoutStatusBarAndArchive)
{
    shell.hasStatusBar = false;
    shell.open(nullptr);
    EXPECT_EQ(at(2), nullptr);
    EXPECT_EQ(shell.getArchiveManagerPresenter(), nullptr);
}

} // namespace

} // namespace KesTest
