#include "support/GuiTest.h"
#include "support/LanguageScope.h"
#include "support/TemporaryHome.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>

#include <filesystem>
#include <iterator>
#include <sstream>

namespace {

using namespace KesProgram;
using Kes::DialogResult;
using KesTest::readFile;
using KesTest::writeFile;
using Texts = std::vector<std::string>;

/// The commands on a model that is one string: "good ..." can be read, "half ..." only in repair mode.
class ArchiveManagerPresenterTest : public KesTest::GuiTest {
protected:
    class Parent : public Kes::IPresenter, public Kes::IView {
    public:
        Kes::IView* getView() override { return this; }
    };

    ArchiveManagerPresenterTest() { _manager.init(""); }

    bool _load(std::istream& stream, bool repair)
    {
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        if (!bytes.starts_with("good ") && !(repair && bytes.starts_with("half ")))
            return false;
        _data = repair ? "good repaired" : bytes;
        return true;
    }
    /// A saved document, so that closing asks nothing.
    std::string _saveDocument()
    {
        _data = "good document";
        const auto path = _home.file("document.abc");
        EXPECT_TRUE(_manager.saveAs(path));
        return path;
    }
    std::string _file(const std::string& name, const std::string& bytes)
    {
        writeFile(_home.file(name), bytes);
        return _home.file(name);
    }

    KesTest::TemporaryHome _home;
    std::string _data = "good new";
    ArchiveManager _manager{[this](const std::string&) { _data = "good new"; },
                            [this] { return std::make_unique<std::istringstream>(_data); },
                            [this](std::istream& stream, bool repair) { return _load(stream, repair); }};
    Parent _parent;
    ArchiveManagerPresenter _presenter{&_manager, &_parent, "abc", "old"};
};

TEST_F(ArchiveManagerPresenterTest, ClosingAsksAboutChangesAndTellsWhetherToGoOn)
{
    const auto path = _home.file("saved.abc");
    const struct {
        DialogResult answer;
        std::vector<std::string> files;
        bool result;
    } cases[] = {{DialogResult::Cancel, {}, false},
                 {DialogResult::No, {}, true},
                 {DialogResult::Yes, {""}, true},
                 {DialogResult::Yes, {path}, true}};
    for (const auto& [answer, files, result] : cases) {
        dialogs.answer(answer);
        for (const auto& file : files)
            dialogs.answerFile(file);
        EXPECT_EQ(_presenter.close(), result);
        const auto& question = dialogs.getMessages().back();
        EXPECT_EQ(question.text, "Save changes to the file [New].abc ?");
        EXPECT_EQ(question.buttons, DialogResult::YesNoCancel);
        EXPECT_EQ(question.title, "File manager");
        EXPECT_EQ(question.parent, &_parent);
    }
    EXPECT_EQ(readFile(path), "good new");
    EXPECT_TRUE(_presenter.close()) << "and asks nothing";
}

TEST_F(ArchiveManagerPresenterTest, ANamedDocumentIsAskedAboutByPathAndAFailedSaveStillCloses)
{
    const auto path = _saveDocument();
    _data = "good change";
    dialogs.answer(DialogResult::Yes);
    dialogs.answerFile(_home.file("missing/a.abc"));
    dialogs.answer(DialogResult::Ok);
    EXPECT_TRUE(_presenter.close());
    EXPECT_EQ(dialogs.getTexts(),
              (Texts{"Save changes to the file " + path + " ?", "Error saving file.\n\nPath:\n" + path}));
    EXPECT_EQ(_presenter.getDisplayFileName(), path);
}

TEST_F(ArchiveManagerPresenterTest, CreateAndOpenReplaceADocumentOnlyWhenItMayClose)
{
    const auto path = _file("a.abc", "good file");
    _data = "good change";
    for (const auto answer : {DialogResult::Cancel, DialogResult::Cancel, DialogResult::No, DialogResult::No})
        dialogs.answer(answer);
    _presenter.create("");
    _presenter.open(path);
    EXPECT_EQ(_data, "good change");
    _presenter.create("");
    EXPECT_EQ(_data, "good new");
    _presenter.open(path);
    EXPECT_EQ(_data, "good file");
    _data = "good change";
    _presenter.replace(path);
    EXPECT_EQ(_data, "good file") << "asks nothing";
    EXPECT_TRUE(dialogs.getFiles().empty());
}

TEST_F(ArchiveManagerPresenterTest, OpenAsksForAFileWithTheFiltersOfTheProgram)
{
    using Filters = std::vector<std::pair<std::string, std::string>>;
    const auto document = _saveDocument();
    dialogs.answerFile("");
    _presenter.open("");
    EXPECT_EQ(_manager.getFileName(), document);
    dialogs.answerFile(_file("a.old", "good file"));
    _presenter.open("");
    EXPECT_EQ(_data, "good file");
    const auto request = dialogs.getFiles().back();
    EXPECT_FALSE(request.save);
    EXPECT_EQ(request.title, "File manager");
    EXPECT_EQ(request.parent, &_parent);
    EXPECT_EQ(request.filters,
              (Filters{{"*.abc", "Archive (*.abc)"}, {"*.old", "Archive \"Velmora\" (*.old)"}}));

    const KesTest::LanguageScope russian(lng::Russian);
    ArchiveManagerPresenter other(&_manager, nullptr, "abc", "");
    dialogs.answerFile("");
    other.open("");
    EXPECT_EQ(dialogs.getFiles().back().filters, (Filters{{"*.abc", "Файл архива (*.abc)"}}));
    EXPECT_EQ(dialogs.getFiles().back().parent, nullptr);
}

TEST_F(ArchiveManagerPresenterTest, AFailedOpenEndsInANewDocumentUnlessItIsRepaired)
{
    const auto half = _file("half.abc", "half file");
    const auto bad = _file("bad.abc", "bad file");
    const auto gone = _home.file("gone.abc");
    const auto text = [](const char* start, const std::string& path) {
        return start + ("\n\nPath:\n" + path);
    };
    const auto question = "File data error. Try opening in data recovery mode?";
    const auto invalid = "This file contains invalid data";
    const auto repaired = "Data converted. Prior to the inspection, check the correctness of the settings.";
    using enum DialogResult;
    const struct {
        std::string path;
        bool enable;
        std::vector<DialogResult> answers;
        Texts texts;
        std::string name;
    } cases[] = {
        {gone, true, {Ok}, {text("Error accessing file.", gone)}, ""},
        {bad, false, {Ok}, {text(invalid, bad)}, ""},
        {half, true, {No}, {text(question, half)}, ""},
        {bad, true, {Yes, Ok}, {text(question, bad), text(invalid, bad)}, ""},
        {half, true, {Yes, Ok}, {text(question, half), text(repaired, half)}, half},
    };
    EXPECT_TRUE(_presenter.getIsEnableRepairMode());
    for (const auto& expected : cases) {
        _saveDocument();
        dialogs.clear();
        for (const auto answer : expected.answers)
            dialogs.answer(answer);
        _presenter.setIsEnableRepairMode(expected.enable);
        _presenter.open(expected.path);
        EXPECT_EQ(dialogs.getTexts(), expected.texts);
        EXPECT_EQ(_manager.getFileName(), expected.name);
        EXPECT_EQ(_data, expected.name.empty() ? "good new" : "good repaired");
        EXPECT_EQ(dialogs.getMessages().front().buttons, expected.answers.front() == Ok ? Ok : YesNo);
    }
}

TEST_F(ArchiveManagerPresenterTest, AFileThatGoesWhileTheRepairIsOfferedCannotBeAccessed)
{
    _saveDocument();
    const auto path = _file("half.abc", "half file");
    dialogs.answer(DialogResult::Yes, [&path] { std::filesystem::remove(path); });
    dialogs.answer(DialogResult::Ok);
    _presenter.open(path);
    EXPECT_EQ(dialogs.getTexts().back(), "Error accessing file.\n\nPath:\n" + path);
    EXPECT_TRUE(_manager.isNew());
}

TEST_F(ArchiveManagerPresenterTest, SaveAsksForAPathOnlyForANewDocument)
{
    dialogs.answerFile("");
    _presenter.save();
    EXPECT_TRUE(_manager.isNew());
    const auto path = _home.file("a.abc");
    dialogs.answerFile(path);
    _presenter.save();
    EXPECT_EQ(dialogs.getFiles().back().filters.size(), 1u);
    EXPECT_TRUE(dialogs.getFiles().back().save);
    EXPECT_EQ(readFile(path), "good new");
    _data = "good change";
    _presenter.save();
    EXPECT_EQ(readFile(path), "good change");
    EXPECT_EQ(dialogs.getFiles().size(), 2u);

    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    dialogs.answer(DialogResult::Ok);
    _presenter.save();
    EXPECT_EQ(dialogs.getTexts(), Texts{"Error saving file.\n\nPath:\n" + path});
}

} // namespace
