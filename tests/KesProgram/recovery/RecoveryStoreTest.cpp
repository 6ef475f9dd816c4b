#include "LostBytes.h"

#include "support/TemporaryHome.h"

#include <gmock/gmock.h>

namespace {

using namespace KesProgram;
using Kind = RecoveryStore::Kind;
using KesTest::readFile;
using KesTest::writeFile;
using std::chrono::system_clock;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

class RecoveryStoreTest : public testing::Test {
protected:
    RecoveryCopy _copy(const std::string& bytes, std::int64_t time = 1000)
    {
        return {"Test", _home.file("\xD1\x84=;\xFF\n.abc"), "8 results of 2026-11-20 14:05, not saved", time,
                bytes};
    }
    std::unique_ptr<RecoveryStore> _open() { return std::make_unique<RecoveryStore>(_folder); }
    std::vector<std::string> _lost() { return KesTest::lostIn(_folder); }
    std::vector<fs::path> _files(const std::string& extension)
    {
        std::vector<fs::path> found;
        for (const auto& file : fs::directory_iterator(_folder))
            if (file.path().extension() == extension)
                found.push_back(file.path());
        return found;
    }

    KesTest::TemporaryHome _home;
    std::string _folder = _home.file("state/");
};

TEST_F(RecoveryStoreTest, ACopyIsOfferedOnceItsOwnerIsGone)
{
    auto owner = _open();
    const auto copy = _copy(std::string("\0bytes\xFF\n", 8));
    ASSERT_TRUE(owner->write(Kind::Work, _copy("older")));
    ASSERT_TRUE(owner->write(Kind::Work, copy));
    EXPECT_THAT(_lost(), IsEmpty()) << "its owner lives";
    EXPECT_EQ(fs::status(_files(".work").front()).permissions(), fs::perms(0600));
    owner.reset();
    auto store = _open();
    auto lost = store->findLost();
    ASSERT_EQ(lost.size(), 1U);
    EXPECT_EQ(lost.front().getCopy(), copy);
    EXPECT_THAT(_lost(), IsEmpty()) << "another instance is asking about it";
    lost.clear();
    EXPECT_THAT(_lost(), ElementsAre(copy.bytes)) << "and it is kept";
    store->findLost().at(0).throwAway();
    EXPECT_THAT(_lost(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(_folder)) << "nothing is left over";
}

TEST_F(RecoveryStoreTest, TheNewestComesFirstAndWorkBeforeTheFileThatItReplaces)
{
    for (const auto& [bytes, time] : {std::pair{"old", 1}, {"newest", 3}, {"newer", 2}}) {
        const auto owner = _open();
        ASSERT_TRUE(owner->write(Kind::Former, _copy(std::string("former ") + bytes, time)));
        ASSERT_TRUE(owner->write(Kind::Work, _copy(bytes, time)));
    }
    EXPECT_THAT(_lost(), ElementsAre("newest", "newer", "old"));
    writeFile(_copy("").fileName, "brok");
    EXPECT_FALSE(_open()->findLost().at(0).isFileNewer()) << "a save of its own has written it";
    _open()->findLost().at(0).throwAway();
    EXPECT_THAT(_lost(), ElementsAre("former newest", "newer", "old"));
}

TEST_F(RecoveryStoreTest, WhatIsInItsFileHasBeenSaved)
{
    {
        const auto one = _open(), other = _open();
        ASSERT_TRUE(one->write(Kind::Former, _copy("former")) && one->write(Kind::Work, _copy("saved")));
        ASSERT_TRUE(other->write(Kind::Former, _copy("saved")));
    }
    writeFile(_copy("").fileName, "other");
    EXPECT_THAT(_lost(), testing::UnorderedElementsAre("saved", "saved")) << "as long, but not the same";
    writeFile(_copy("").fileName, "saved");
    EXPECT_THAT(_lost(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(_folder));
}

TEST_F(RecoveryStoreTest, AdoptedCopiesAreTheInstancesOwn)
{
    ASSERT_TRUE(_open()->write(Kind::Work, _copy("work")));
    auto store = _open();
    store->adopt(std::move(store->findLost().at(0)));
    EXPECT_THAT(_lost(), IsEmpty());
    EXPECT_EQ(store->read(Kind::Work), _copy("work"));
    store->setAside(Kind::Work);
    EXPECT_THAT(_lost(), ElementsAre("work"));
    EXPECT_EQ(store->read(Kind::Work), std::nullopt);
}

TEST_F(RecoveryStoreTest, WhatItsProgramHasLeftInASharedFolderBecomesItsOwnOnceNobodyHasIt)
{
    RecoveryStore shared(_home.file("shared/")), living(_home.file("shared/"));
    ASSERT_TRUE(living.write(Kind::Work, _copy("living")));
    for (const std::string program : {"Test", "Other"}) {
        auto work = _copy(program + " work"), former = _copy(program + " former");
        work.program = former.program = program;
        RecoveryStore owner(_home.file("shared/"));
        ASSERT_TRUE(owner.write(Kind::Former, former) && owner.write(Kind::Work, work));
    }
    _open()->takeOver(shared, "Test");
    EXPECT_THAT(_lost(), ElementsAre("Test work"));
    _open()->findLost().at(0).throwAway();
    EXPECT_THAT(_lost(), ElementsAre("Test former"));
    EXPECT_THAT(KesTest::lostIn(_home.file("shared/")), ElementsAre("Other work"));
    EXPECT_TRUE(living.read(Kind::Work));
}

TEST_F(RecoveryStoreTest, AfterThirtyDaysACopyGoesUnlessItsOwnerLives)
{
    const auto living = _open();
    ASSERT_TRUE(living->write(Kind::Work, _copy("living")));
    ASSERT_TRUE(_open()->write(Kind::Work, _copy("lost")));
    writeFile(_folder + "0f8fad5b-d9cb-469f-a165-70867728950e.former", "broken");
    writeFile(_folder + "notes.work", "somebody else's");
    const auto now = system_clock::now();
    _open()->removeOutdated(now + std::chrono::days(29));
    EXPECT_EQ(_files(".work").size(), 3U);
    _open()->removeOutdated(now + std::chrono::days(31));
    EXPECT_EQ(_files(".work").size(), 2U);
    EXPECT_THAT(_files(".former"), IsEmpty());
    EXPECT_EQ(readFile(_folder + "notes.work"), "somebody else's");
    EXPECT_TRUE(living->read(Kind::Work));
}

TEST_F(RecoveryStoreTest, BrokenAndForeignFilesAreNoCopies)
{
    EXPECT_THAT(_lost(), IsEmpty()) << "no folder at all";
    const std::string good = _copy("bytes").toFile();
    EXPECT_TRUE(RecoveryCopy::fromFile(good));
    for (std::size_t size = 0; size < good.size(); ++size)
        EXPECT_FALSE(RecoveryCopy::fromFile(good.substr(0, size))) << size;
    for (std::size_t at = 0; at < good.size(); ++at) {
        std::string changed = good;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        const auto read = RecoveryCopy::fromFile(changed);
        EXPECT_TRUE(!read || read == _copy("bytes")) << at;
    }
    for (const auto& content : {std::string("kes-recovery-copy-1 x 99999999999999999999\n"), good + "x"})
        EXPECT_FALSE(RecoveryCopy::fromFile(content));
    writeFile(_folder + "0f8fad5b-d9cb-469f-a165-70867728950e.work", good + "x");
    fs::create_directory(_folder + "0f8fad5b-d9cb-469f-a165-708677289500.work");
    EXPECT_THAT(_lost(), IsEmpty());
}

TEST_F(RecoveryStoreTest, AFolderThatSomebodyHasClearedIsMadeAnewIfItCanBe)
{
    const auto store = _open();
    ASSERT_TRUE(store->write(Kind::Work, _copy("older")));
    fs::remove_all(_folder);
    ASSERT_TRUE(store->write(Kind::Work, _copy("bytes")));
    EXPECT_THAT(_lost(), IsEmpty()) << "and its owner lives";
    EXPECT_EQ(store->read(Kind::Work), _copy("bytes"));
    fs::remove_all(_folder);
    writeFile(_home.file("state"), "");
    EXPECT_FALSE(store->write(Kind::Work, _copy("bytes")));
}

TEST_F(RecoveryStoreTest, AKillWhileWritingLeavesTheOldCopyWholeAndNothingUnfinished)
{
    auto owner = _open();
    ASSERT_TRUE(owner->write(Kind::Work, _copy("older")));
    const auto work = _files(".work").front();
    fs::create_hard_link(work, _home.file("the file itself"));
    ASSERT_TRUE(owner->write(Kind::Work, _copy("newer")));
    EXPECT_EQ(RecoveryCopy::fromFile(readFile(_home.file("the file itself"))), _copy("older"))
        << "written in the place of the former one";
    owner.reset();
    writeFile(work.string() + ".X4Y5Z6", "unfinished");
    EXPECT_THAT(_lost(), ElementsAre("newer"));
    _open()->findLost().at(0).throwAway();
    EXPECT_THAT(_lost(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(_folder)) << "no unfinished file stays";
}

} // namespace
