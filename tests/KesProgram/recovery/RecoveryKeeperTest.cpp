// What the next start finds of edits, of work that was given up and of work that was restored, and after a
// save that went wrong or was cut short.

#include "LostBytes.h"

#include "support/GuiTest.h"
#include "support/LargestFile.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Log.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/recovery/RecoveryKeeper.h>

#include <thread>

namespace {

using namespace KesTest;
using namespace KesProgram;
using namespace std::chrono_literals;
using Kes::DialogResult;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

/// A document that is one string, with the commands and the keeper of a program.
class RecoveryKeeperTest : public GuiTest {
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
        return lostIn(files);
    }
    /// What is offered after the program has been closed.
    Texts _lostAfterEnd()
    {
        _keeper->end();
        _keeper.reset();
        return lostIn(_folder);
    }
    /// What the next start does when its user wants the work back. Returns the file it belongs to.
    std::string _restore()
    {
        auto lost = std::move(_keeper->getStore().findLost().at(0));
        auto fileName = lost.getCopy().fileName;
        std::istringstream data(lost.getCopy().bytes);
        EXPECT_TRUE(_presenter.restore(data, fileName, lost.isFileNewer()));
        _keeper->adopt(std::move(lost));
        return fileName;
    }
    std::string _saved(const std::string& data)
    {
        _data = data;
        const auto path = _home.file("document.abc");
        EXPECT_TRUE(_manager.saveAs(path));
        return path;
    }

    TemporaryHome _home;
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
    EXPECT_FALSE(_keeper->getStore().read(RecoveryStore::Kind::Work)) << "the data belong to the GUI thread";
}

// Saves

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

TEST_F(RecoveryKeeperTest, TheFormerFileComesBackWhenASaveHasBrokenIt)
{
    const auto path = _saved("former");
    _begin();
    _data = std::string(10000, 'x');
    {
        const LargestFile limit(4096);
        EXPECT_TRUE(_manager.save());
    }
    EXPECT_EQ(readFile(path), std::string(4096, 'x'));
    EXPECT_THAT(_lostAfterKill(), ElementsAre(_data));
    // Nor can it be opened again.
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_FALSE(_manager.save());
    std::filesystem::remove(path);
    dialogs.answer(DialogResult::No);
    EXPECT_TRUE(_presenter.close());
    EXPECT_THAT(_lostAfterEnd(), ElementsAre("former")) << "only the new work was given up";
    // The next start opens it, and saves it whole.
    _begin();
    EXPECT_EQ(_restore(), path);
    EXPECT_TRUE(_manager.isFileChanged());
    EXPECT_TRUE(_manager.save());
    EXPECT_EQ(readFile(path), "former");
    EXPECT_THAT(_lostAfterEnd(), IsEmpty());
}

TEST_F(RecoveryKeeperTest, WithoutACopyTheFormerFileStandsBesideMeanwhileAndReplacesNone)
{
    const auto path = _saved("former");
    writeFile(_home.file("state"), "in the place of the folder");
    writeFile(path + ".former", "of a save that was cut short");
    _begin();
    _data = "edited";
    EXPECT_TRUE(_manager.save());
    EXPECT_EQ(readFile(path), "edited");
    EXPECT_EQ(readFile(path + ".former"), "of a save that was cut short");
    EXPECT_FALSE(std::filesystem::exists(path + ".former2"));
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
    EXPECT_EQ(_keeper->getStore().read(RecoveryStore::Kind::Work).value().fileName, path);
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

} // namespace
