// What the next start finds after a save that went wrong or was cut short.

#include "RecoveryKeeperTest.h"

#include "support/LargestFile.h"

#include <KesCommon/Log.h>

namespace KesTest {
namespace {

using RecoverySaveTest = RecoveryKeeperTest;

TEST_F(RecoverySaveTest, ABrokenSaveKeepsBothFilesAndTheDocumentChanged)
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

TEST_F(RecoverySaveTest, TheFormerFileComesBackWhenASaveHasBrokenIt)
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

TEST_F(RecoverySaveTest, WithoutACopyTheFormerFileStandsBesideMeanwhileAndReplacesNone)
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

TEST_F(RecoverySaveTest, AProviderThatThrowsLeavesFileAndCopyAlone)
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

TEST_F(RecoverySaveTest, ASaveThatCouldNotOpenItsFileLeavesTheCopyWithTheNameOfTheDocument)
{
    const auto path = _saved("former");
    _begin();
    _data = "edited";
    EXPECT_FALSE(_manager.saveAs(_home.file("missing/other.abc")));
    EXPECT_THAT(_lostAfterKill(), ElementsAre("edited"));
    EXPECT_EQ(_keeper->getStore().read(RecoveryStore::Kind::Work).value().fileName, path);
}

/// A run goes on while the file is written.
TEST_F(RecoverySaveTest, WhatIsMeasuredDuringASaveIsNotTakenForSaved)
{
    const auto path = _saved("first result");
    _begin();
    _onData = [this] { _data += ", another"; };
    EXPECT_TRUE(_manager.save());
    EXPECT_NE(readFile(path), _data);
    EXPECT_THAT(_lostAfterKill(), ElementsAre(_data));
}

} // namespace
} // namespace KesTest
