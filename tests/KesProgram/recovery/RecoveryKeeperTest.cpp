#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Log.h>
#include <KesProgram/archive/ArchiveHelper.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/recovery/RecoveryKeeper.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <thread>
#include <utility>

namespace {

using namespace KesProgram;
using namespace std::chrono_literals;
using Kes::DialogResult;
using KesTest::readFile;
using KesTest::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

/// A document that is one string, with the commands and the keeper of a program.
class RecoveryKeeperTest : public KesTest::GuiTest {
protected:
    RecoveryKeeperTest() { _manager.init(""); }

    void _begin()
    {
        _keeper = std::make_unique<RecoveryKeeper>(_manager, "Test", _folder, [] { return "8 results"; });
    }
    /// What is offered after a kill at this moment.
    Texts _lostAfterKill()
    {
        _keeper->writeNow(5s);
        const auto files = _home.file("killed/");
        std::filesystem::remove_all(files);
        if (std::filesystem::exists(_folder))
            std::filesystem::copy(_folder, files);
        Texts bytes;
        for (const auto& work : RecoveryStore(files).findLost())
            bytes.push_back(work.getCopy().bytes);
        return bytes;
    }
    /// What is offered after the program has been closed.
    Texts _lostAfterEnd()
    {
        _keeper->end();
        _keeper.reset();
        Texts bytes;
        for (const auto& work : RecoveryStore(_folder).findLost())
            bytes.push_back(work.getCopy().bytes);
        return bytes;
    }
    std::string _saved(const std::string& data)
    {
        _data = data;
        const auto path = _home.file("document.abc");
        EXPECT_TRUE(_manager.saveAs(path));
        return path;
    }

    KesTest::TemporaryHome _home;
    std::string _folder = _home.file("state/");
    std::string _data = "new";
    bool _isThrowing = false;
    /// Called once, when the data has been taken.
    std::function<void()> _onData;
    ArchiveManager _manager{[this](const std::string&) { _data = "new"; },
                            [this] {
                                if (_isThrowing)
                                    throw std::runtime_error("no data");
                                auto stream = std::make_unique<std::istringstream>(_data);
                                if (const auto onData = std::exchange(_onData, nullptr))
                                    onData();
                                return stream;
                            },
                            [this](std::istream& stream, bool) {
                                _data.assign(std::istreambuf_iterator<char>(stream), {});
                                return _data != "bad";
                            }};
    ArchiveManagerPresenter _presenter{&_manager, nullptr, "abc", ""};
    std::unique_ptr<RecoveryKeeper> _keeper;
};

TEST_F(RecoveryKeeperTest, AnEditIsCopiedWithinASecondOrTwoAndAnUndoneOneIsNot)
{
    _begin();
    EXPECT_THAT(_lostAfterKill(), IsEmpty()) << "nothing has been edited";
    _data = "edited";
    EXPECT_TRUE(KesTest::waitFor(
        [this] { return _keeper->getStore().read(RecoveryStore::Kind::Work).has_value(); }, 3s));
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

TEST_F(RecoveryKeeperTest, AnEndWithoutAnAnswerKeepsTheWork)
{
    _begin();
    _data = "edited";
    EXPECT_THAT(_lostAfterEnd(), ElementsAre("edited"));
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
        RecoveryStore(_folder).findLost().front().throwAway();
    }
}

TEST_F(RecoveryKeeperTest, ABrokenSaveKeepsBothFilesAndTheDocumentChanged)
{
    const auto path = _saved("former");
    _begin();
    std::vector<std::string> errors;
    auto previous = KesLog::Log::setObserver([&](KesLog::Log::Level level, const std::string& text) {
        if (level == KesLog::Log::Level::Error)
            errors.push_back(text);
    });
    // The full disk: what is written does not arrive.
    _data = "edited";
    std::filesystem::remove(path);
    std::filesystem::create_symlink("/dev/full", path);
    EXPECT_TRUE(_manager.save());
    KesLog::Log::setObserver(std::move(previous));
    EXPECT_THAT(errors, ElementsAre("saving " + path + ": the file does not hold what it should"));
    EXPECT_TRUE(_manager.isFileChanged());
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
    std::filesystem::remove(path);
    EXPECT_TRUE(_manager.save());
    EXPECT_THAT(_lostAfterEnd(), IsEmpty());
}

/// The save is cut short between what the manager tells, as by a disk that fills up meanwhile.
TEST_F(RecoveryKeeperTest, TheFormerFileComesBackWhenASaveHasBrokenIt)
{
    const auto path = _saved("former");
    _begin();
    _data = "edited";
    _keeper->onSaving(path, "former", _manager.takeSnapshot(), "edited");
    writeFile(path, "edi");
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
    _keeper->onSaved(path, IWorkKeeper::SaveEnd::Broken);
    dialogs.answer(DialogResult::No);
    EXPECT_TRUE(_presenter.close());
    EXPECT_THAT(_lostAfterEnd(), ElementsAre("former")) << "only the new work was given up";
    // The next start opens it, and saves it whole.
    _begin();
    auto lost = _keeper->getStore().findLost();
    EXPECT_EQ(lost.front().getCopy().fileName, path);
    std::istringstream data(lost.front().getCopy().bytes);
    EXPECT_TRUE(_presenter.restore(data, path, lost.front().isFileNewer()));
    _keeper->adopt(std::move(lost.front()));
    EXPECT_TRUE(_manager.isFileChanged());
    EXPECT_TRUE(_manager.save());
    EXPECT_EQ(readFile(path), "former");
    EXPECT_THAT(_lostAfterEnd(), IsEmpty());
}

/// A whole document is a mebibyte of one letter.
bool isWhole(const std::string& bytes)
{
    return bytes.size() == 1U << 20 && bytes.find_first_not_of(bytes.front()) == std::string::npos;
}

TEST_F(RecoveryKeeperTest, AKillWhileSavingLosesNeitherTheFormerFileNorTheNewWork)
{
    const auto path = _saved(std::string(1U << 20, 'a'));
    std::mt19937 random(5);
    int broken = 0;
    for (int i = 0; i < 60; ++i) {
        const auto child = fork();
        if (child == 0) {
            _begin();
            for (char letter = 'b';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
                _data.assign(1U << 20, letter);
                _manager.save();
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 100000));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        const bool isBroken = !isWhole(readFile(path));
        broken += isBroken ? 1 : 0;
        RecoveryStore store(_folder);
        auto lost = store.findLost();
        ASSERT_TRUE(!isBroken || lost.size() == 1U) << i;
        if (lost.empty())
            continue;
        EXPECT_TRUE(isWhole(lost.front().getCopy().bytes));
        lost.front().throwAway();
        lost.clear();
        lost = store.findLost();
        ASSERT_TRUE(!isBroken || lost.size() == 1U) << i;
        for (auto& former : lost) {
            EXPECT_TRUE(isWhole(former.getCopy().bytes));
            former.throwAway();
        }
        lost.clear();
        writeFile(path, std::string(1U << 20, 'a'));
    }
    std::cout << "files found in pieces: " << broken << " of 60\n";
}

TEST_F(RecoveryKeeperTest, RestoredWorkIsChangedAndStaysUntilItIsSaved)
{
    const auto path = _saved("former");
    _begin();
    _data = "edited";
    EXPECT_THAT(_lostAfterEnd(), ElementsAre("edited"));
    _manager.create("");
    _begin();
    auto lost = std::move(_keeper->getStore().findLost().front());
    std::istringstream data(lost.getCopy().bytes);
    EXPECT_TRUE(_presenter.restore(data, lost.getCopy().fileName, lost.isFileNewer()));
    _keeper->adopt(std::move(lost));
    EXPECT_EQ(_manager.getFileName(), path);
    EXPECT_EQ(_data, "edited");
    EXPECT_TRUE(_manager.isFileChanged());
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
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

TEST_F(RecoveryKeeperTest, AProviderThatThrowsLeavesFileAndCopyAlone)
{
    const auto path = _saved("former");
    _begin();
    _data = "edited";
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
    _isThrowing = true;
    EXPECT_THROW(_manager.save(), std::runtime_error);
    EXPECT_EQ(readFile(path), "former");
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
    // It must not lock the user in.
    dialogs.answer(DialogResult::No);
    EXPECT_TRUE(_presenter.close());
    EXPECT_THAT(dialogs.getTexts(), ElementsAre("Save changes to the file " + path + " ?"));
    _isThrowing = false;
}

TEST_F(RecoveryKeeperTest, ASaveThatCouldNotOpenItsFileLeavesTheCopyWithTheNameOfTheDocument)
{
    const auto path = _saved("former");
    _begin();
    _data = "edited";
    EXPECT_FALSE(_manager.saveAs(_home.file("missing/other.abc")));
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
    EXPECT_EQ(_keeper->getStore().read(RecoveryStore::Kind::Work)->fileName, path);
}

/// A run goes on while the file is written.
TEST_F(RecoveryKeeperTest, WhatIsMeasuredDuringASaveIsNotTakenForSaved)
{
    const auto path = _saved("first result");
    _begin();
    _onData = [this] { _data += ", another"; };
    EXPECT_TRUE(_manager.save());
    EXPECT_NE(readFile(path), _data);
    EXPECT_THAT(_lostAfterKill(), ElementsAre(_data));
}

TEST_F(RecoveryKeeperTest, OnAnotherThreadTheLastSnapshotIsWritten)
{
    _begin();
    bool isWritten = false;
    _data = "edited";
    std::thread([&] { isWritten = _keeper->writeNow(5s); }).join();
    EXPECT_TRUE(isWritten) << "there is none yet";
    EXPECT_TRUE(KesTest::waitFor(
        [this] { return _keeper->getStore().read(RecoveryStore::Kind::Work).has_value(); }, 3s));
}

/// A program packs with the container functions; the snapshot leaves that to another thread.
TEST_F(RecoveryKeeperTest, ASnapshotOfAMebibyteIsTakenInTwoMillisecondsAndPackedToTheSameBytes)
{
    std::mt19937 random(1);
    std::string noise(1 << 20, '\0');
    for (auto& byte : noise)
        byte = static_cast<char>(random());
    const auto provider = [&] {
        ArchiveHelper::DataMap data;
        data["a"] = std::make_unique<std::stringstream>(noise);
        data["empty"] = std::make_unique<std::stringstream>();
        auto stream = std::make_unique<std::stringstream>();
        EXPECT_TRUE(ArchiveHelper::packDataToStream(*stream, data, ArchiveHelper::PREFIX));
        return stream;
    };
    const std::string bytes = provider()->str();
    auto shortest = std::chrono::steady_clock::duration::max();
    DataSnapshot snapshot;
    for (int i = 0; i < 20; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        const auto next = DataSnapshot::take(provider);
        EXPECT_TRUE(i == 0 || next == snapshot);
        snapshot = next;
        shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
    }
    EXPECT_EQ(snapshot.pack(), bytes);
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(shortest).count();
    RecordProperty("microseconds", static_cast<int>(microseconds));
    std::cout << "snapshot and comparison: " << microseconds << " us\n";
#ifdef NDEBUG
    EXPECT_LT(microseconds, 2000);
#endif
    noise[5] ^= 1;
    EXPECT_FALSE(DataSnapshot::take(provider) == snapshot);
}

TEST_F(RecoveryKeeperTest, ASnapshotOfAProgramThatDoesMoreThanPackingIsExact)
{
    using Provider = DataSnapshot::Provider;
    const auto pack = [](std::ostream& out) {
        ArchiveHelper::DataMap data;
        data["a"] = std::make_unique<std::stringstream>("content");
        return ArchiveHelper::packDataToStream(out, data, "program");
    };
    const Provider providers[] = {[&] {
                                      auto stream = std::make_unique<std::stringstream>();
                                      *stream << "head";
                                      pack(*stream);
                                      return stream;
                                  },
                                  [&] {
                                      auto stream = std::make_unique<std::stringstream>();
                                      pack(*stream);
                                      pack(*stream);
                                      return stream;
                                  },
                                  [] { return std::make_unique<std::stringstream>("plain"); },
                                  [] { return std::make_unique<std::stringstream>(); }};
    for (const auto& provider : providers) {
        const auto stream = provider();
        EXPECT_EQ(DataSnapshot::take(provider).pack(),
                  std::string(std::istreambuf_iterator<char>(*stream), {}));
    }
    EXPECT_TRUE(DataSnapshot::take([] { return nullptr; }).isEmpty());
}

TEST_F(RecoveryKeeperTest, ASnapshotOfAnEndlessStreamEnds)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto bytes = DataSnapshot::take([] {
                           ArchiveHelper::DataMap data;
                           data["endless"] = std::make_unique<std::ifstream>("/dev/zero");
                           auto stream = std::make_unique<std::stringstream>();
                           EXPECT_FALSE(ArchiveHelper::packDataToStream(*stream, data, "program"));
                           return stream;
                       }).pack();
    EXPECT_EQ(bytes, "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s) << "it fills the memory";
}

/// The data of a save must not pass for an archive when there is none.
TEST_F(RecoveryKeeperTest, ASnapshotOfWhatCannotBePackedIsAFailureToItsProgramAsThePackingIs)
{
    using Contents = std::map<std::string, std::string>;
    ArchiveHelper::ContentLimits limits;
    limits.entry = 100;
    limits.total = 2000;
    const Contents impossible[] = {{{"long", std::string(101, 'x')}},
                                   {{"1", "x"}, {"2", "x"}, {"3", "x"}, {"4", "x"}},
                                   {{"folder/", ""}},
                                   {{std::string(65536, 'n'), ""}},
                                   {}};
    for (const auto& contents : impossible)
        EXPECT_THROW(DataSnapshot::take([&]() -> std::unique_ptr<std::istream> {
                         ArchiveHelper::DataMap data;
                         for (const auto& [name, content] : contents)
                             data[name] = std::make_unique<std::istringstream>(content);
                         auto stream = std::make_unique<std::stringstream>();
                         if (!ArchiveHelper::packDataToStream(*stream, data, "program", limits))
                             throw std::runtime_error("too much");
                         return stream;
                     }),
                     std::runtime_error);
}

TEST_F(RecoveryKeeperTest, ASnapshotOfAProgramThatReadsItsArchiveBackIsExact)
{
    const auto provider = [] {
        ArchiveHelper::DataMap data, back;
        data["a"] = std::make_unique<std::istringstream>("content");
        auto stream = std::make_unique<std::stringstream>();
        if (!ArchiveHelper::packDataToStream(*stream, data, "program") ||
            !ArchiveHelper::unpackStreamToData(*stream, back, "program"))
            throw std::runtime_error("no archive");
        stream->seekg(0);
        return stream;
    };
    EXPECT_EQ(DataSnapshot::take(provider).pack(), provider()->str());
}

} // namespace
