#include "ShellTest.h"

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>
#include <KesProgram/archive/FileRecentManager.h>

#include <libxml++/libxml++.h>

#include <filesystem>

namespace KesTest {

/// Outside the unnamed namespace: its name becomes a file name.
class OtherShellModel : public ShellModel {
public:
    using ShellModel::ShellModel;
};

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// Collects the warnings that go to the log on this thread.
class LogWarnings {
public:
    ~LogWarnings() { KesLog::Log::setObserver(std::move(_previous)); }

    std::vector<std::string> texts;

private:
    const std::thread::id _thread = std::this_thread::get_id();
    KesLog::Log::Observer _previous =
        KesLog::Log::setObserver([this](KesLog::Log::Level level, const std::string& text) {
            if (level == KesLog::Log::Level::Warn && std::this_thread::get_id() == _thread)
                texts.push_back(text);
        });
};

class ConfigTest : public ShellTest {
protected:
    std::string path() { return shell._getXmlConfigFullPath(); }

    /// A recent file that exists, in the form in which it is kept.
    std::string makeRecentFile(const std::string& name)
    {
        const std::string file = home.file(name);
        writeFile(file, "x");
        KesProgram::FileRecentManager manager(1);
        manager.tryAdd(file);
        return manager.serialize();
    }

    std::size_t countRecentFiles() { return model.getFileRecentManager()->getCollection().size(); }

    bool hasRectangle(const Kes::RectangleF& rectangle)
    {
        return waitFor([&] { return shell._getProgramView()->getRectangle() == rectangle; },
                       std::chrono::seconds(3));
    }
};

TEST_F(ConfigTest, EachModelClassHasItsFile)
{
    EXPECT_EQ(path(), Kes::getKesCrossAppCacheDir() + "ShellModel.cfg");
    OtherShellModel otherModel(record);
    EXPECT_EQ(ShellPresenter(otherModel, record)._getXmlConfigFullPath(),
              Kes::getKesCrossAppCacheDir() + "OtherShellModel.cfg");
}

TEST_F(ConfigTest, WritesRecentFilesThenRectangle)
{
    model.extension = "abc";
    const std::string recent = makeRecentFile("a b&<\xd1\x84>.abc");
    open();
    shell._getProgramView()->setRectangle({50, 60, 640, 480});
    ASSERT_TRUE(hasRectangle({50, 60, 640, 480}));
    const auto saved = [this] {
        shell._saveXmlConfig();
        return readFile(path());
    };
    const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root>\n";
    const std::string rectangle = "  <Rectangle>50;60;640;480</Rectangle>\n</root>\n";
    EXPECT_EQ(saved(), start + rectangle) << "no recent files, no element";
    ASSERT_TRUE(model.getFileRecentManager()->tryAdd(home.file("a b&<\xd1\x84>.abc")));
    EXPECT_EQ(saved(), start + "  <RecentFiles>" + recent + "</RecentFiles>\n" + rectangle);
}

TEST_F(ConfigTest, ModelWithoutArchiveIgnoresRecentFiles)
{
    writeFile(path(), "<root><RecentFiles>" + makeRecentFile("a.abc") + "</RecentFiles></root>");
    open();
    EXPECT_EQ(countRecentFiles(), 0U);
    model.getFileRecentManager()->tryAdd(home.file("a.abc"));
    shell._saveXmlConfig();
    EXPECT_THAT(readFile(path()), Not(HasSubstr("RecentFiles")));
}

struct ReadCase {
    const char* name;
    /// "@" stands for the recent file.
    std::string text;
    bool hasRecentFile;
    bool hasRectangle;
};

void PrintTo(const ReadCase& c, std::ostream* out)
{
    *out << c.name;
}

class ConfigReadTest : public ConfigTest, public testing::WithParamInterface<ReadCase> {};

TEST_P(ConfigReadTest, TakesWhatMakesSense)
{
    const auto& c = GetParam();
    model.extension = "abc";
    std::string text = c.text;
    if (const auto at = text.find('@'); at != std::string::npos)
        text.replace(at, 1, makeRecentFile("a.abc"));
    writeFile(path(), text);
    const LogWarnings warnings;
    open();
    EXPECT_EQ(countRecentFiles(), c.hasRecentFile ? 1U : 0U);
    const Kes::RectangleF rectangle{50, 60, 640, 480};
    EXPECT_TRUE(c.hasRectangle ? hasRectangle(rectangle)
                               : shell._getProgramView()->getRectangle() != rectangle);
    EXPECT_THAT(warnings.texts, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Files, ConfigReadTest,
    testing::Values(
        ReadCase{"indented",
                 "<root>\n  <RecentFiles>@</RecentFiles>\n  <Rectangle>50;60;640;480</Rectangle>\n</root>\n",
                 true, true},
        ReadCase{"otherOrderAndMore",
                 "<root><More a='1'><Rectangle>1;2;3;4</Rectangle></More><Rectangle>50;60;640;480</Rectangle>"
                 "<Rectangle>1;2;300;400</Rectangle><RecentFiles>@</RecentFiles></root>",
                 true, true},
        ReadCase{"badRectangle", "<root><Rectangle>50;60;640</Rectangle><RecentFiles>@</RecentFiles></root>",
                 true, false},
        ReadCase{"emptyElements", "<root><RecentFiles/><Rectangle/></root>", false, false},
        ReadCase{"missingFile",
                 "<any><RecentFiles>/no/such/file</RecentFiles><Rectangle>50;60;640;480</Rectangle></any>",
                 false, true},
        ReadCase{"nothing", "<root/>", false, false}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_F(ConfigTest, FailuresToReadAreWarningsInTheLog)
{
    class Throwing : public ShellPresenter {
    public:
        using ShellPresenter::ShellPresenter;
        void _extractXmlConfig(xmlpp::Element*) override { throw 1; }
    };
    const std::string text = "Error loading program configuration";
    const auto warning = [&](auto&& presenter, ShellModel& own) {
        const LogWarnings warnings;
        presenter.open(nullptr);
        own.close();
        EXPECT_TRUE(waitFor([this] { return record.has("closed"); }));
        record.take();
        return warnings.texts;
    };
    ShellModel missing(record);
    EXPECT_THAT(warning(ShellPresenter(missing, record), missing), Contains(StartsWith(text + ":\n")));
    for (const std::string content : {"", "rubbish", "<root><Rectangle>", "<root>\xff</root>"}) {
        SCOPED_TRACE(content);
        writeFile(path(), content);
        ShellModel broken(record);
        EXPECT_THAT(warning(ShellPresenter(broken, record), broken), Contains(StartsWith(text + ":\n")));
    }
    writeFile(path(), "<root/>");
    ShellModel own(record);
    EXPECT_THAT(warning(Throwing(own, record), own), Contains(text)) << "not a standard exception";
}

TEST_F(ConfigTest, FailureToWriteLeavesTheProgramOpen)
{
    open();
    // A file where the folder has to be fails for every user, root included.
    const std::string folder = std::filesystem::path(path()).parent_path();
    writeFile(folder, "");
    EXPECT_ANY_THROW(shell.requestClose());
    EXPECT_FALSE(record.has("model closing"));
    EXPECT_TRUE(isWindowSeen());
    // It is no dead end: the next request finds everything as it was.
    std::filesystem::remove(folder);
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink("/dev/full", path());
    EXPECT_ANY_THROW(shell.requestClose()) << "a full disk";
    std::filesystem::remove(path());
    shell.requestClose();
    EXPECT_TRUE(record.has("model closing"));
    EXPECT_TRUE(std::filesystem::exists(path()));
}

} // namespace

} // namespace KesTest
