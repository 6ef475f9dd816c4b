#include "ShellTest.h"

#include "../recovery/LostBytes.h"

#include <KesCommon/Directories.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/shell/UnattendedRun.h>

#include <ctime>

namespace {

using namespace KesTest;
using Kes::DialogResult;
using KesProgram::RecoveryStore;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Attendance = KesProgram::ProgramBasePresenter::Attendance;

/// A program with a document that is one string, started after another instance has been killed.
class RecoveryTest : public ShellTest {
protected:
    RecoveryTest() { model.extension = "abc"; }
    ~RecoveryTest() override { runPendingEvents(); }

    void leave(const std::string& bytes, const std::string& fileName, std::int64_t time)
    {
        leaveIn(folder, "Shell test", bytes, fileName, time);
    }
    static void leaveIn(const std::string& folder, const std::string& program, const std::string& bytes,
                        const std::string& fileName = {}, std::int64_t time = 1)
    {
        RecoveryStore store(folder);
        ASSERT_TRUE(
            store.write(RecoveryStore::Kind::Work, {program, fileName, "8 results, not saved", time, bytes}));
    }
    std::vector<std::string> lost() { return lostIn(folder); }
    /// Until the presenter dies the lock is its own: another folder stands for the next start.
    std::vector<std::string> lostAfterwards()
    {
        std::filesystem::copy(folder, home.file("copies/"));
        return lostIn(home.file("copies/"));
    }
    /// Opens the program and waits for its questions.
    void openAndAnswer(std::vector<DialogResult> answers)
    {
        for (const auto answer : answers)
            dialogs.answer(answer);
        open();
        EXPECT_TRUE(waitFor([&] { return dialogs.getMessages().size() >= answers.size(); }));
        runPendingEvents();
        EXPECT_EQ(dialogs.getMessages().size(), answers.size());
    }
    void close(DialogResult answer)
    {
        dialogs.answer(answer);
        shell.requestClose();
        EXPECT_TRUE(waitFor([this] { return isClosed; }));
    }

    const std::string folder = Kes::getKesCrossAppStateDir() + "ShellModel.ShellTests/recovery/";
};

TEST_F(RecoveryTest, NothingLostNothingAsked)
{
    openAndAnswer({});
    EXPECT_FALSE(std::filesystem::exists(folder)) << "nor has anything been written";
}

/// Neither has ever closed, so that nothing says yet whose the name of the model class is.
TEST_F(RecoveryTest, AProgramWithAModelClassOfTheSameNameHasWorkOfItsOwn)
{
    const std::string others = Kes::getKesCrossAppStateDir() + "ShellModel.another-program/recovery/";
    // Where former versions kept the work of both.
    const std::string former = Kes::getKesCrossAppStateDir() + "ShellModel/recovery/";
    leaveIn(others, "Shell test", "others");
    leaveIn(former, "Another program", "former others");
    leaveIn(former, "Shell test", "former");
    openAndAnswer({DialogResult::Yes});
    EXPECT_EQ(model.data, "former");
    EXPECT_THAT(lostIn(others), ElementsAre("others"));
    EXPECT_THAT(lostIn(former), ElementsAre("former others"));
}

TEST_F(RecoveryTest, NobodyIsAskedDuringATest)
{
    leave("lost", "", 1700000000);
    shell.open(nullptr);
    model._setCanProgramStop(true);
    EXPECT_TRUE(waitFor([this] { return shell.getWindow().get_mapped(); }));
    runPendingEvents();
    EXPECT_THAT(dialogs.getMessages(), IsEmpty());
    model._setCanProgramStop(false);
    EXPECT_THAT(lost(), ElementsAre("lost"));
}

TEST_F(RecoveryTest, TheQuestionTellsFileTimeAndContentsAndTheNextOneThrowsAwayOrKeeps)
{
    const std::string path = home.file("old.abc");
    writeFile(path, "former");
    leave("lost", path, 1700000000);
    leave("kept", "", 1);
    openAndAnswer({DialogResult::No, DialogResult::Yes, DialogResult::No, DialogResult::No});
    const auto texts = dialogs.getTexts();
    EXPECT_THAT(texts.at(0), AllOf(HasSubstr("File: " + path + "\nTime: 2023-11-1"),
                                   HasSubstr("Contents: 8 results, not saved")));
    EXPECT_THAT(texts.at(1), AllOf(HasSubstr("kept until 2023-12-1"), HasSubstr(path)));
    EXPECT_THAT(texts.at(2), HasSubstr("File: [New].abc"));
    EXPECT_THAT(lost(), ElementsAre("kept"));
    close(DialogResult::No);
    EXPECT_THAT(lost(), ElementsAre("kept"));
}

TEST_F(RecoveryTest, ARestoredDocumentIsChangedAndItsCopyStaysUntilItIsSaved)
{
    const std::string path = home.file("old.abc");
    writeFile(path, "former");
    leave("lost", path, time(nullptr) + 2);
    leave("older", path, 1);
    openAndAnswer({DialogResult::Yes});
    EXPECT_EQ(model.data, "lost");
    auto& archive = *model.getArchiveManager();
    EXPECT_EQ(archive.getFileName(), path);
    EXPECT_TRUE(archive.isFileChanged());
    EXPECT_EQ(readFile(path), "former");
    EXPECT_THAT(lost(), ElementsAre("older")) << "the other one is in the window";
    shell.saveArchive();
    EXPECT_EQ(readFile(path), "lost");
    shell.requestClose();
    EXPECT_TRUE(waitFor([this] { return isClosed; }));
    EXPECT_THAT(lost(), ElementsAre("older"));
}

/// Since the kill somebody has opened the file itself.
TEST_F(RecoveryTest, ARestoredDocumentDoesNotReplaceANewerFileUnasked)
{
    const std::string path = home.file("old.abc");
    writeFile(path, "newer");
    leave("lost", path, time(nullptr) - 10);
    openAndAnswer({DialogResult::Yes});
    dialogs.answer(DialogResult::No);
    shell.saveArchive();
    EXPECT_THAT(dialogs.getTexts().back(), HasSubstr("Overwrite it?\n\nPath:\n" + path));
    EXPECT_EQ(readFile(path), "newer");
    dialogs.answer(DialogResult::Yes);
    shell.saveArchive();
    EXPECT_EQ(readFile(path), "lost");
    shell.saveArchive();
    EXPECT_EQ(dialogs.getMessages().size(), 3U) << "it is its own now";
}

TEST_F(RecoveryTest, ATimeThatNoCalendarHasKeepsNoWorkFromItsUser)
{
    constexpr std::int64_t times[] = {std::numeric_limits<std::int64_t>::max(),
                                      std::numeric_limits<std::int64_t>::min()};
    leave("late", "", times[0]);
    leave("early", "", times[1]);
    openAndAnswer({DialogResult::No, DialogResult::No, DialogResult::Yes});
    EXPECT_EQ(model.data, "early");
}

TEST_F(RecoveryTest, ACancelledReplacementLosesNothing)
{
    leave("lost", "", 1);
    dialogs.answer(DialogResult::Yes, [this] { model.data = "edited"; });
    dialogs.answer(DialogResult::Cancel);
    open();
    EXPECT_TRUE(waitFor([this] { return dialogs.getMessages().size() == 2; }));
    runPendingEvents();
    EXPECT_EQ(model.data, "edited");
    EXPECT_THAT(lost(), ElementsAre("lost"));
}

TEST_F(RecoveryTest, WithoutAUserNobodyIsAskedAndCopiesOfOthersAreLeftAlone)
{
    leave("lost", "", 1);
    shell.setAttendance(Attendance::Never);
    openAndAnswer({});
    model.data = "measured";
    EXPECT_TRUE(shell.writeRecoveryCopy(std::chrono::seconds(5)));
    EXPECT_THAT(lost(), ElementsAre("lost"));
    close(DialogResult::No);
    EXPECT_FALSE(std::filesystem::exists(shell._getXmlConfigFullPath()));
    EXPECT_THAT(lost(), ElementsAre("lost"));
}

TEST_F(RecoveryTest, AUserWhoComesLaterHasTheLastWord)
{
    shell.setAttendance(Attendance::Later);
    openAndAnswer({});
    KesProgram::UnattendedRun run({}, model, shell, {});
    run.begin();
    EXPECT_TRUE(waitFor([&] { return run.isDone(); }));
    model.data = "measured";
    EXPECT_FALSE(model.getArchiveManager()->saveAs(home.file("nowhere/a.abc")));
    close(DialogResult::No);
    EXPECT_THAT(lostAfterwards(), IsEmpty());
}

TEST_F(RecoveryTest, ACloseThatNobodyAnswersKeepsTheWork)
{
    openAndAnswer({});
    model.data = "edited";
    model.close();
    EXPECT_TRUE(waitFor([this] { return isClosed; }));
    EXPECT_THAT(lostAfterwards(), ElementsAre("edited"));
}

} // namespace
