// What the next start finds of edits, of work that was given up and of work that was restored.

#include "RecoveryKeeperTest.h"

#include <thread>

namespace KesTest {
namespace {

TEST_F(RecoveryKeeperTest, AnEditIsCopiedWithinASecondOrTwoAndAnUndoneOneIsNot)
{
    _begin();
    EXPECT_THAT(_lostAfterKill(), IsEmpty()) << "nothing has been edited";
    _data = "edited";
    EXPECT_TRUE(
        waitFor([this] { return _keeper->getStore().read(RecoveryStore::Kind::Work).has_value(); }, 5s));
    const auto copy = _keeper->getStore().read(RecoveryStore::Kind::Work);
    EXPECT_EQ(copy->bytes, "edited");
    EXPECT_EQ(copy->holds, "8 results, not saved");
    EXPECT_TRUE(copy->program == "Test" && copy->fileName.empty());
    EXPECT_NEAR(static_cast<double>(copy->time), static_cast<double>(time(nullptr)), 5.0);
    _data = "new";
    EXPECT_THAT(_lostAfterKill(), IsEmpty());
}

TEST_F(RecoveryKeeperTest, SavedOrGivenUpWorkLeavesNothingBehind)
{
    _begin();
    _data = "edited";
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
    _saved("edited");
    EXPECT_THAT(_lostAfterKill(), IsEmpty());
    _data = "edited again";
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited again"));
    dialogs.answer(DialogResult::No);
    EXPECT_TRUE(_presenter.close());
    EXPECT_THAT(_lostAfterEnd(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(_folder) && !std::filesystem::is_empty(_folder));
}

TEST_F(RecoveryKeeperTest, WhatIsEditedAfterTheAnswerIsNotGivenUp)
{
    _begin();
    _data = "edited";
    dialogs.answer(DialogResult::No);
    dialogs.answerFile("");
    _presenter.open("");
    EXPECT_EQ(_data, "edited") << "no file has been chosen";
    _data = "edited again";
    EXPECT_THAT(_lostAfterEnd(), ElementsAre("edited again")) << "nobody has answered for that";
}

TEST_F(RecoveryKeeperTest, WorkThatWasToBeSavedAndWasNotIsKept)
{
    const auto other = _home.file("other.abc");
    writeFile(other, "other");
    for (const bool isReplaced : {true, false}) {
        _begin();
        _data = "edited";
        dialogs.answer(DialogResult::Yes);
        dialogs.answerFile("");
        if (isReplaced)
            _presenter.open(other);
        else
            EXPECT_TRUE(_presenter.close());
        EXPECT_EQ(_data, isReplaced ? "other" : "edited");
        EXPECT_THAT(_lostAfterEnd(), ElementsAre("edited")) << isReplaced;
        RecoveryStore(_folder).findLost().at(0).throwAway();
    }
}

TEST_F(RecoveryKeeperTest, RestoredWorkStaysWhateverIsEditedUntilItIsSaved)
{
    const auto path = _saved("former");
    _begin();
    _data = "edited";
    EXPECT_THAT(_lostAfterEnd(), ElementsAre("edited"));
    _manager.create("");
    _begin();
    EXPECT_EQ(_restore(), path);
    for (const std::string data : {"edited", "edited again", "edited"}) {
        _data = data;
        EXPECT_THAT(_lostAfterKill(), ElementsAre(data));
    }
    EXPECT_TRUE(_manager.save());
    EXPECT_THAT(_lostAfterEnd(), IsEmpty());
}

TEST_F(RecoveryKeeperTest, AnUnattendedRunKeepsWhatItCouldNotSave)
{
    _begin();
    _keeper->setIsUnattended(true);
    _data = "measured";
    EXPECT_FALSE(_manager.saveAs(_home.file("missing/a.abc")));
    dialogs.answer(DialogResult::No);
    EXPECT_TRUE(_presenter.close());
    EXPECT_THAT(_lostAfterEnd(), ElementsAre("measured"));
}

TEST_F(RecoveryKeeperTest, OnAnotherThreadTheLastSnapshotIsWritten)
{
    _begin();
    bool isWritten = false;
    _data = "edited";
    std::thread([&] { isWritten = _keeper->writeNow(5s); }).join();
    EXPECT_TRUE(isWritten) << "there is none yet";
    EXPECT_TRUE(
        waitFor([this] { return _keeper->getStore().read(RecoveryStore::Kind::Work).has_value(); }, 5s));
}

} // namespace
} // namespace KesTest
