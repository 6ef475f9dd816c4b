#include "ShellTest.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <thread>

namespace KesTest {

namespace {

using Kes::DialogResult;
using testing::ElementsAre;
using testing::IsEmpty;

enum class Way { CloseButton, RequestClose };

/// Every test for both ways by which a user or a program asks to close.
class ClosingTest : public ShellTest, public testing::WithParamInterface<Way> {
protected:
    void close()
    {
        if (GetParam() == Way::CloseButton)
            shell.clickClose();
        else
            shell.requestClose();
    }

    /// All clicks of an impatient user at once.
    void closeAgainAndAgain()
    {
        for (int i = 0; i < 3; ++i) {
            shell.clickClose();
            shell.requestClose();
        }
    }

    void openWithArchive()
    {
        model.extension = "abc";
        open();
    }

    bool isOpen() const { return !record.has("model closing") && !record.has("fill config"); }

    bool hasClosed()
    {
        const bool closed = waitFor([this] { return isClosed && !isWindowSeen(); });
        return closed && record.count("model closing") == 1 && record.count("closed") == 1;
    }

    std::vector<DialogResult> askedButtons() const
    {
        std::vector<DialogResult> buttons;
        for (const auto& message : dialogs.getMessages())
            buttons.push_back(message.buttons);
        return buttons;
    }

    const DialogResult runQuestion = DialogResult::YesNo;
    const DialogResult archiveQuestion = DialogResult::YesNoCancel;
};

INSTANTIATE_TEST_SUITE_P(Ways, ClosingTest, testing::Values(Way::CloseButton, Way::RequestClose),
                         [](const auto& instance) {
                             return instance.param == Way::CloseButton ? "closeButton" : "requestClose";
                         });

TEST_P(ClosingTest, IdleProgramClosesWithoutAQuestion)
{
    open();
    close();
    EXPECT_TRUE(isWindowSeen()) << "the window goes later, from the main loop";
    EXPECT_THAT(record.take(), ElementsAre("fill config", "model closing"));
    EXPECT_TRUE(std::filesystem::exists(shell._getXmlConfigFullPath()));
    closeAgainAndAgain();
    EXPECT_TRUE(waitFor([this] { return isClosed; }));
    EXPECT_FALSE(isWindowSeen());
    EXPECT_THAT(record.take(), ElementsAre("closed"));
}

TEST_P(ClosingTest, RunGoesOnWhenTheUserDeclines)
{
    open();
    model.startRun();
    dialogs.answer(DialogResult::No);
    close();
    ASSERT_EQ(dialogs.getMessages().size(), 1U);
    const auto& question = dialogs.getMessages()[0];
    EXPECT_EQ(question.text, "Make tests. Stop?");
    EXPECT_EQ(question.title, "Shell test");
    EXPECT_EQ(question.buttons, runQuestion);
    EXPECT_EQ(question.parent, shell.getView());
    EXPECT_TRUE(model.isRunning());
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(record.has("model stop"));
}

TEST_P(ClosingTest, RunIsStoppedThenTheProgramCloses)
{
    open();
    model.startRun();
    dialogs.answer(DialogResult::Yes, [this] {
        closeAgainAndAgain();
        shell._onClosing();
    });
    close();
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(record.take(),
                testing::IsSupersetOf({"model stop", "fill config", "model closing", "closed"}));
    EXPECT_EQ(dialogs.getMessages().size(), 1U);
}

TEST_P(ClosingTest, RunThatEndsUnderTheQuestionNeedsNoStop)
{
    openWithArchive();
    model.startRun();
    dialogs.answer(DialogResult::Yes, [this] {
        model.endRun();
        EXPECT_TRUE(waitFor([this] { return !model.isOutputStarted(); }));
    });
    dialogs.answer(DialogResult::No);
    close();
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(askedButtons(), ElementsAre(runQuestion, archiveQuestion));
    EXPECT_FALSE(record.has("model stop"));
}

TEST_P(ClosingTest, ClosingWaitsForARunThatStopsLater)
{
    open();
    model.stopsLater = true;
    model.startRun();
    dialogs.answer(DialogResult::Yes);
    close();
    closeAgainAndAgain();
    runPendingEvents();
    EXPECT_TRUE(record.has("model stop"));
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(isWindowSeen());
    model.endRun();
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(dialogs.getMessages().size(), 1U);
}

TEST_P(ClosingTest, CancelledArchiveQuestionKeepsTheProgramOpen)
{
    openWithArchive();
    dialogs.answer(DialogResult::Cancel, [this] { closeAgainAndAgain(); });
    close();
    runPendingEvents();
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(isWindowSeen());
    dialogs.answer(DialogResult::No);
    close();
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(askedButtons(), ElementsAre(archiveQuestion, archiveQuestion));
}

TEST_P(ClosingTest, AfterACancelledArchiveQuestionTheNextEndOfARunAsksAgain)
{
    openWithArchive();
    model.stopsLater = true;
    model.startRun();
    dialogs.answer(DialogResult::Yes);
    dialogs.answer(DialogResult::Cancel);
    close();
    model.endRun();
    EXPECT_TRUE(waitFor([this] { return askedButtons().size() == 2; }));
    runPendingEvents();
    EXPECT_TRUE(isOpen());

    model.startRun();
    dialogs.answer(DialogResult::No);
    model.endRun();
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(askedButtons(), ElementsAre(runQuestion, archiveQuestion, archiveQuestion));
}

/// The slot that an earlier request has left in place sees the stop as well as the request itself does.
TEST_P(ClosingTest, SecondRequestWithTheSlotInPlaceAsksOnce)
{
    openWithArchive();
    model.stopsLater = true;
    model.startRun();
    dialogs.answer(DialogResult::Yes);
    dialogs.answer(DialogResult::Cancel);
    close();
    model.endRun();
    EXPECT_TRUE(waitFor([this] { return askedButtons().size() == 2; }));

    model.stopsLater = false;
    model.startRun();
    dialogs.answer(DialogResult::Yes);
    dialogs.answer(DialogResult::Cancel);
    close();
    runPendingEvents();
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(askedButtons(), ElementsAre(runQuestion, archiveQuestion, runQuestion, archiveQuestion));
    dialogs.answer(DialogResult::No);
    close();
    EXPECT_TRUE(hasClosed());
}

/// A stop by the user, on the GUI thread, inside an emission: the archive question must not hold the gate.
TEST_P(ClosingTest, QuestionInsideAnEmissionLeavesOtherThreadsFree)
{
    openWithArchive();
    model.stopsLater = true;
    model.startRun();
    dialogs.answer(DialogResult::Yes);
    dialogs.answer(DialogResult::Cancel);
    close();
    model.endRun();
    EXPECT_TRUE(waitFor([this] { return askedButtons().size() == 2; }));

    model.stopsLater = false;
    model.startRun();
    dialogs.answer(DialogResult::No, [this] {
        std::thread device([this] { model._setState("still here"); });
        device.join();
    });
    model.stopTest();
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(model.getState(), "");
}

TEST_P(ClosingTest, SaveQuestionSavesBeforeTheConfigurationIsWritten)
{
    openWithArchive();
    const std::string file = home.file("saved.abc");
    dialogs.answer(DialogResult::Yes);
    dialogs.answerFile(file);
    close();
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(readFile(file), "data");
    EXPECT_THAT(readFile(shell._getXmlConfigFullPath()), testing::HasSubstr("saved.abc"));
}

TEST_P(ClosingTest, RequestUnderAnotherDialogIsTakenUpAfterIt)
{
    openWithArchive();
    dialogs.answer(DialogResult::Cancel, [this] {
        closeAgainAndAgain();
        runPendingEvents();
        EXPECT_TRUE(isOpen());
    });
    shell.openArchive();
    dialogs.answer(DialogResult::No);
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(askedButtons(), ElementsAre(archiveQuestion, archiveQuestion));
}

/// The device fails while the program is being closed: the text is still shown, and what shows it lives
/// until the box has been closed.
TEST_P(ClosingTest, ProgramLivesUntilItsLastMessageIsClosed)
{
    open();
    dialogs.answer(DialogResult::Ok, [this] {
        EXPECT_FALSE(waitFor([this] { return isClosed; }, std::chrono::milliseconds(100)));
    });
    std::thread device([this] { model.signalMessage.emit("Outputs could not be switched off"); });
    device.join();
    close();
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(dialogs.getMessages().size(), 1U);
}

TEST_P(ClosingTest, ModelClosedByTheProgramItself)
{
    open();
    model.close();
    closeAgainAndAgain();
    EXPECT_TRUE(hasClosed());
    EXPECT_FALSE(record.has("fill config"));
}

class ClosingDetailsTest : public ShellTest {};

TEST_F(ClosingDetailsTest, WindowThatWasNeverShownCloses)
{
    class Hidden : public ShellPresenter {
    public:
        using ShellPresenter::ShellPresenter;

    protected:
        void _evalOpen(KesProgram::IProgramView*, Kes::IView*) override {}
    };
    Hidden hidden(model, record);
    hidden.requestClose();
    EXPECT_FALSE(record.has("model closing")) << "there is nothing to close yet";
    hidden.open(nullptr);
    hidden.requestClose();
    EXPECT_TRUE(waitFor([this] { return record.has("closed"); }));
}

TEST_F(ClosingDetailsTest, SaveOnClosingTwiceClosesTheModelOnce)
{
    open();
    shell._saveOnClosing();
    shell._saveOnClosing();
    EXPECT_EQ(record.count("model closing"), 1U);
    EXPECT_EQ(record.count("fill config"), 1U);
}

/// A program destroys everything in the slot of the closed signal, with the window's events still to come.
TEST_F(ClosingDetailsTest, PresenterMayDieInItsClosedSignal)
{
    auto ownModel = std::make_unique<ShellModel>(record);
    auto ownShell = std::make_unique<ShellPresenter>(*ownModel, record);
    bool isGone = false;
    ownShell->signalClosed.connect([&] {
        ownShell.reset();
        ownModel.reset();
        isGone = true;
    });
    ownShell->open(nullptr);
    ownModel->startRun();
    dialogs.answer(DialogResult::Yes);
    ownShell->requestClose();
    EXPECT_TRUE(waitFor([&] { return isGone; }));
}

} // namespace

} // namespace KesTest
