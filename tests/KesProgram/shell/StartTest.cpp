#include "ShellTest.h"

#include <KesProgram/archive/ArchiveManagerPresenter.h>

namespace {

using namespace KesTest;
using testing::ElementsAre;

TEST_F(ShellTest, EverythingHappensInOrderAndASecondOpenOnlyShowsTheWindow)
{
    model.extension = "abc";
    EXPECT_EQ(shell.getView(), nullptr);
    writeFile(shell._getXmlConfigFullPath(), "<root><Rectangle>30;40;700;500</Rectangle></root>");
    // What the model says before there is a window is not lost.
    dialogs.answer(Kes::DialogResult::Ok);
    shell.onHook = [this](const std::string& hook) {
        if (hook == "before init" || hook == "load config") {
            EXPECT_EQ(model.getArchiveManager(), nullptr);
        } else if (hook == "create status bar") {
            EXPECT_EQ(model.signalMessage.size(), 1U);
            EXPECT_NE(shell.getArchiveManagerPresenter(), nullptr);
            EXPECT_EQ(shell.getView(), nullptr);
            model.signalMessage.emit("early");
        } else if (hook == "init") {
            EXPECT_EQ(shell.getWindow().get_title(), "Shell test");
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
    shell.getWindow().hide();
    shell.open(nullptr);
    EXPECT_THAT(record.take(), ElementsAre("eval open", "opened"));
    EXPECT_TRUE(isWindowSeen());
    EXPECT_EQ(model.signalMessage.size(), 1U);
}

} // namespace
