#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/SignalGate.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/archive/DataFormatError.h>
#include <KesProgram/archive/FileAccessError.h>

#include <sys/stat.h>

namespace {

using namespace KesProgram;
using Kes::DialogResult;
using KesTest::readFile;
using KesTest::writeFile;
using Texts = std::vector<std::string>;

/// A manager with a model that is one string: "good ..." can be read, "half ..." only in repair mode.
/// Records what the model is asked and what is signalled.
class ArchiveManagerTest : public KesTest::GuiTest {
protected:
    std::unique_ptr<ArchiveManager> _make()
    {
        auto manager = std::make_unique<ArchiveManager>(
            [this](const std::string& name) {
                _events.push_back("new " + name);
                _data = "good new";
            },
            [this] { return std::make_unique<std::istringstream>(_data); },
            [this](std::istream& stream, bool repair) { return _load(stream, repair); });
        manager->signalFileNameChanged.connect(
            [this, made = manager.get()] { _events.push_back("name=" + made->getFileName()); });
        return manager;
    }
    bool _load(std::istream& stream, bool repair)
    {
        _events.push_back(repair ? "repair" : "load");
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        if (!bytes.starts_with("good ") && !(repair && bytes.starts_with("half ")))
            return false;
        _data = repair ? "good repaired" : bytes;
        return true;
    }
    Texts _takeEvents() { return std::exchange(_events, {}); }
    std::string _file(const std::string& name, const std::string& bytes)
    {
        writeFile(_home.file(name), bytes);
        return _home.file(name);
    }

    KesTest::TemporaryHome _home;
    std::string _data;
    Texts _events;
    std::unique_ptr<ArchiveManager> _manager = _make();
};

template <typename Error>
bool failedWith(const Kes::Result& result)
{
    return !result && dynamic_cast<Error*>(result.getError().get()) != nullptr;
}

TEST_F(ArchiveManagerTest, InitOpensTheLastFileOrBeginsANewOne)
{
    const auto good = _file("good", "good file"), bad = _file("bad", "bad file");
    const struct {
        std::string file;
        Texts events;
        std::string name;
    } cases[] = {{"", {"new "}, ""},
                 {_home.file("missing"), {"new ", "name="}, ""},
                 {bad, {"load", "new ", "name="}, ""},
                 {good, {"load"}, good}};
    for (const auto& [file, events, name] : cases) {
        _manager = _make();
        EXPECT_FALSE(_manager->isInited() || _manager->isFileChanged());
        _manager->init(file);
        _manager->init(good);
        EXPECT_EQ(_takeEvents(), events) << file;
        EXPECT_EQ(_manager->getFileName(), name);
    }
}

TEST_F(ArchiveManagerTest, OpenNamesTheFileBeforeItReadsIt)
{
    EXPECT_TRUE(failedWith<FileAccessError>(_manager->open(_home.file("missing"), false)));
    const auto path = _file("Имя файла.abc", "half file");
    EXPECT_TRUE(failedWith<DataFormatError>(_manager->open(path, false)));
    EXPECT_TRUE(_manager->open(path, true));
    EXPECT_EQ(_data, "good repaired");
    _manager->create("");
    EXPECT_EQ(_takeEvents(), (Texts{"name=" + path, "load", "repair", "new ", "name="}));
    const auto pipe = _home.file("pipe.abc");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const auto& noFile : {pipe, _home.getPath().string()})
        EXPECT_TRUE(failedWith<FileAccessError>(_manager->open(noFile, false)));
}

TEST_F(ArchiveManagerTest, SaveWritesTheBytesAndKeepsTheNameWhenItCannotOpen)
{
    EXPECT_FALSE(_manager->save());
    const auto path = _file("Архив.abc", std::string(1000, 'x'));
    _data = std::string("good \0\xFF", 7);
    ASSERT_TRUE(_manager->saveAs(path));
    EXPECT_EQ(readFile(path), _data);
    EXPECT_FALSE(_manager->saveAs(_home.file("missing/a.abc")));
    EXPECT_EQ(_takeEvents(), Texts{"name=" + path});
    EXPECT_TRUE(_manager->saveAs("/dev/full")) << "only opening is checked";
    const auto pipe = _home.file("pipe.abc");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(_manager->saveAs(pipe)) << "nobody reads it";
}

TEST_F(ArchiveManagerTest, ChangedMeansOtherBytesThanInTheFile)
{
    _manager->init("");
    EXPECT_TRUE(_manager->isFileChanged());
    const auto path = _home.file("a.abc");
    const std::string saved = _data = std::string(131072, 'x');
    ASSERT_TRUE(_manager->saveAs(path));
    EXPECT_FALSE(_manager->isFileChanged());
    for (const std::size_t position : {0U, 65535U, 65536U, 131071U}) {
        _data = saved;
        _data[position] = '!';
        EXPECT_TRUE(_manager->isFileChanged()) << position;
    }
    for (const auto& data : {saved + "x", saved.substr(0, 65536), std::string()}) {
        _data = data;
        EXPECT_TRUE(_manager->isFileChanged()) << data.size();
    }
    _data = saved;
    std::filesystem::remove(path);
    EXPECT_TRUE(_manager->isFileChanged());
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_TRUE(_manager->isFileChanged()) << "what is no file is not waited for";
}

class ArchiveManagerPresenterTest : public ArchiveManagerTest {
protected:
    struct Parent : Kes::IPresenter, Kes::IView {
        Kes::IView* getView() override { return this; }
    };

    ArchiveManagerPresenterTest() { _manager->init(""); }

    /// A saved document, so that closing asks nothing.
    std::string _saveDocument()
    {
        _data = "good document";
        EXPECT_TRUE(_manager->saveAs(_home.file("document.abc")));
        return _manager->getFileName();
    }

    Parent _parent;
    ArchiveManagerPresenter _presenter{_manager.get(), &_parent, "abc", "old"};
};

TEST_F(ArchiveManagerPresenterTest, ClosingAsksAboutChangesAndTellsWhetherToGoOn)
{
    const auto path = _home.file("saved.abc");
    dialogs.answerFile("");
    dialogs.answerFile(path);
    using enum DialogResult;
    for (const auto answer : {Cancel, No, Yes, Yes}) {
        dialogs.answer(answer);
        EXPECT_EQ(_presenter.close(), answer != Cancel);
        const auto& question = dialogs.getMessages().back();
        EXPECT_EQ(question.text, "Save changes to the file [New].abc ?");
        EXPECT_EQ(question.buttons, YesNoCancel);
        EXPECT_TRUE(question.title == "File manager" && question.parent == &_parent);
    }
    EXPECT_TRUE(dialogs.getFiles().back().save && dialogs.getFiles().back().parent == &_parent);
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
    // As in a slot.
    const Kes::SignalGate::Guard gate;
    EXPECT_TRUE(_presenter.close());
    EXPECT_EQ(dialogs.getTexts(),
              (Texts{"Save changes to the file " + path + " ?", "Error saving file.\n\nPath:\n" + path}));
    EXPECT_EQ(_presenter.getDisplayFileName(), path);
}

TEST_F(ArchiveManagerPresenterTest, AFileThatSomebodyElseHasWrittenIsOverwrittenOnlyWhenTheUserWantsIt)
{
    const auto path = _saveDocument();
    const auto question =
        "The file has been changed by another program since it was opened. Overwrite it?\n\nPath:\n" + path;
    const std::function<void()> changes[] = {
        [&] { writeFile(path, "another size"); },
        [&] {
            // The same size and time, another file.
            const auto time = std::filesystem::last_write_time(path);
            writeFile(path + ".new", std::string(std::filesystem::file_size(path), 'x'));
            std::filesystem::last_write_time(path + ".new", time);
            std::filesystem::rename(path + ".new", path);
        }};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& change = changes[i % 2];
        _presenter.save();
        // Saved or opened, it is the file that it was then.
        if (i >= 2) {
            _manager->create("");
            _presenter.replace(path);
        }
        EXPECT_THAT(dialogs.getTexts(), testing::IsEmpty()) << "it is its own file";
        change();
        const auto theirs = readFile(path);
        dialogs.answer(DialogResult::No);
        _presenter.save();
        EXPECT_EQ(readFile(path), theirs);
        dialogs.answer(DialogResult::Yes);
        _presenter.save();
        EXPECT_EQ(readFile(path), _data);
        EXPECT_EQ(dialogs.getTexts(), (Texts{question, question}));
        dialogs.clear();
    }
    std::filesystem::remove(path);
    _presenter.save();
    EXPECT_EQ(readFile(path), _data) << "nothing is overwritten";
}

TEST_F(ArchiveManagerPresenterTest, CreateAndOpenReplaceADocumentOnlyWhenItMayClose)
{
    const auto path = _file("a.abc", "good file");
    _data = "good change";
    dialogs.answer(DialogResult::Cancel);
    _presenter.create("");
    dialogs.answer(DialogResult::Cancel);
    _presenter.open(path);
    EXPECT_EQ(_data, "good change");
    _presenter.replace(path);
    EXPECT_EQ(_data, "good file") << "asks nothing";
}

TEST_F(ArchiveManagerPresenterTest, AFailedOpenEndsInANewDocumentUnlessItIsRepaired)
{
    const auto half = _file("half.abc", "half file");
    const auto bad = _file("bad.abc", "bad file");
    const auto gone = _home.file("gone.abc");
    const auto text = [](auto* start, const std::string& path) { return start + ("\n\nPath:\n" + path); };
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
    for (const auto& expected : cases) {
        _saveDocument();
        dialogs.clear();
        for (const auto answer : expected.answers)
            dialogs.answer(answer);
        _presenter.setIsEnableRepairMode(expected.enable);
        _presenter.open(expected.path);
        EXPECT_EQ(dialogs.getTexts(), expected.texts);
        EXPECT_EQ(_manager->getFileName(), expected.name);
        EXPECT_EQ(_data, expected.name.empty() ? "good new" : "good repaired");
    }
}

} // namespace
