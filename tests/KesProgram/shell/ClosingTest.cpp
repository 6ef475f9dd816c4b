#include "ShellTest.h"

#include <KesCommonView/DialogPresenter.h>

namespace {

using namespace KesTest;
using Kes::DialogResult;
using testing::ElementsAre;

constexpr auto runQuestion = DialogResult::YesNo;
constexpr auto archiveQuestion = DialogResult::YesNoCancel;

/// Every test for both ways to close: the window's button and a request of the program.
class ClosingTest : public ShellTest, public testing::WithParamInterface<bool> {
protected:
    void close() { GetParam() ? shell.clickClose() : shell.requestClose(); }

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

    /// Starts a second run, with the slot left behind that waits for the end of a run.
    void startAgainAfterACancel()
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
        EXPECT_THAT(askedButtons(), ElementsAre(runQuestion, archiveQuestion));
        EXPECT_TRUE(isOpen());
        model.stopsLater = false;
        dialogs.clear();
        record.take();
        model.startRun();
    }

    bool isOpen() { return !record.has("model closing") && !record.has("fill config") && isWindowSeen(); }

    bool hasClosed()
    {
        return waitFor([this] { return isClosed && !isWindowSeen(); }) &&
               record.count("model closing") == 1 && record.count("closed") == 1;
    }

    std::vector<DialogResult> askedButtons() const
    {
        std::vector<DialogResult> buttons;
        for (const auto& message : dialogs.getMessages())
            buttons.push_back(message.buttons);
        return buttons;
    }
};

INSTANTIATE_TEST_SUITE_P(Ways, ClosingTest, testing::Bool());

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
    ASSERT_THAT(askedButtons(), ElementsAre(runQuestion));
    const auto& question = dialogs.getMessages()[0];
    EXPECT_EQ(question.text, "Make tests. Stop?");
    EXPECT_TRUE(question.title == "Shell test" && question.parent == shell.getView());
    EXPECT_TRUE(model.isRunning() && isOpen());
    EXPECT_FALSE(record.has("model stop"));
}

TEST_P(ClosingTest, ClosingWaitsForTheEndOfTheRun)
{
    open();
    model.stopsLater = true;
    model.startRun();
    dialogs.answer(DialogResult::Yes, [this] { closeAgainAndAgain(); });
    close();
    // Every further request asks again; the stop that is under way is not called off by it.
    dialogs.answer(DialogResult::No);
    close();
    runPendingEvents();
    EXPECT_EQ(record.count("model stop"), 1U);
    EXPECT_TRUE(isOpen());
    model.endRun();
    EXPECT_TRUE(hasClosed());
    EXPECT_TRUE(record.has("fill config"));
    EXPECT_THAT(askedButtons(), ElementsAre(runQuestion, runQuestion));
}

/// What was answered first still holds, as it does for a run that ends after the second answer.
TEST_P(ClosingTest, AnAwaitedStopThatComesUnderTheNextQuestionIsTakenUpAfterIt)
{
    for (const auto& [second, isHeardUnderIt] : {std::pair(DialogResult::No, false),
                                                 {DialogResult::No, true},
                                                 {DialogResult::Yes, false},
                                                 {DialogResult::Yes, true}}) {
        openWithArchive();
        model.stopsLater = true;
        model.startRun();
        dialogs.answer(DialogResult::Yes);
        close();
        dialogs.answer(second, [this, isHeard = isHeardUnderIt] {
            model.endRun();
            EXPECT_TRUE(waitFor([this] { return !model.isRunning(); }));
            if (isHeard)
                runPendingEvents();
        });
        dialogs.answer(DialogResult::Cancel);
        close();
        runPendingEvents();
        EXPECT_THAT(askedButtons(), ElementsAre(runQuestion, runQuestion, archiveQuestion));
        EXPECT_TRUE(isOpen());
        EXPECT_FALSE(shell.isClosing());
        dialogs.clear();
    }
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

/// The slot that an earlier request has left in place sees the stop as well as the request itself does.
TEST_P(ClosingTest, SecondRequestWithTheSlotInPlaceAsksOnce)
{
    startAgainAfterACancel();
    dialogs.answer(DialogResult::Yes);
    dialogs.answer(DialogResult::Cancel, [this] { closeAgainAndAgain(); });
    close();
    runPendingEvents();
    EXPECT_TRUE(isOpen());
    EXPECT_THAT(askedButtons(), ElementsAre(runQuestion, archiveQuestion));
    dialogs.answer(DialogResult::No);
    close();
    EXPECT_TRUE(hasClosed());
}

/// A stop by the user, on the GUI thread, inside an emission: the archive question must not hold the gate.
TEST_P(ClosingTest, QuestionInsideAnEmissionLeavesOtherThreadsFree)
{
    startAgainAfterACancel();
    dialogs.answer(DialogResult::Yes, [this] { onAnotherThread([this] { model._setState("still here"); }); });
    dialogs.answerFile("");
    model.stopTest();
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(model.getState(), "");
}

/// The same stop, when the configuration cannot be written: the user is told, and it is not left half done.
TEST_P(ClosingTest, FailureInsideAnEmissionLeavesTheStopAlone)
{
    startAgainAfterACancel();
    writeFile(std::filesystem::path(shell._getXmlConfigFullPath()).parent_path(), "");
    dialogs.answer(DialogResult::No);
    dialogs.answer(DialogResult::Ok);
    model.stopTest();
    EXPECT_TRUE(record.has("model stop"));
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(dialogs.getTexts().back(), testing::HasSubstr(shell._getXmlConfigFullPath()));
}

TEST_P(ClosingTest, WindowsButtonClosesWithoutTheConfigurationThatCannotBeWritten)
{
    open();
    shell.onHook = [](const std::string& hook) {
        if (hook == "fill config")
            throw std::logic_error("no room");
    };
    dialogs.answer(DialogResult::Ok);
    shell.clickClose();
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(dialogs.getTexts(), ElementsAre(testing::HasSubstr("no room")));
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

TEST_P(ClosingTest, RequestsUnderADialogOfAnyoneAreTakenUpAfterIt)
{
    openWithArchive();
    dialogs.answer(DialogResult::Ok, [this] {
        closeAgainAndAgain();
        runPendingEvents();
        EXPECT_TRUE(isOpen());
    });
    dialogs.answer(DialogResult::No);
    Kes::DialogPresenter::show(nullptr, "There is no help", "", DialogResult::Ok);
    EXPECT_TRUE(hasClosed());
    EXPECT_THAT(askedButtons(), ElementsAre(DialogResult::Ok, archiveQuestion));
}

/// The device fails while the program is being closed: the text is still shown, and what shows it lives
/// until the box has been closed.
TEST_P(ClosingTest, ProgramLivesUntilItsLastMessageIsClosed)
{
    open();
    dialogs.answer(DialogResult::Ok, [this] {
        EXPECT_FALSE(waitFor([this] { return isClosed; }, std::chrono::milliseconds(100)));
    });
    onAnotherThread([this] { model.signalMessage.emit("Outputs could not be switched off"); });
    close();
    EXPECT_TRUE(hasClosed());
    EXPECT_EQ(dialogs.getMessages().size(), 1U);
}

/// A program destroys everything in the slot of the closed signal, with the window's events still to come.
TEST_P(ClosingTest, PresenterMayDieInItsClosedSignal)
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
    GetParam() ? ownShell->clickClose() : ownShell->requestClose();
    EXPECT_TRUE(waitFor([&] { return isGone; }));
}

TEST_F(ShellTest, AProgramThatCouldNotBeBuiltSaysSoEachTime)
{
    shell.onHook = [](const std::string& hook) {
        if (hook == "init")
            throw std::runtime_error("no content");
    };
    for (int i = 0; i < 2; ++i)
        EXPECT_THROW(shell.open(nullptr), std::runtime_error);
    EXPECT_EQ(record.count("init"), 1U);
}

TEST_F(ShellTest, WindowThatWasNeverShownCloses)
{
    class Hidden : public ShellPresenter {
    public:
        using ShellPresenter::ShellPresenter;

    protected:
        void _evalOpen(KesProgram::IProgramView*, Kes::IView*) override {}
    };
    Hidden hidden(model, record);
    using Shell = KesProgram::ProgramBasePresenter;
    for (const auto command : {&Shell::createArchive, &Shell::openArchive, &Shell::saveArchive,
                               &Shell::saveAsArchive, &Shell::requestClose})
        (hidden.*command)();
    EXPECT_FALSE(record.has("model closing")) << "there is nothing to close yet";
    hidden.open(nullptr);
    hidden.requestClose();
    EXPECT_TRUE(waitFor([this] { return record.has("closed"); }));
}

} // namespace
