#include "ShellTest.h"

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>
#include <KesProgram/archive/FileRecentManager.h>

namespace {

using namespace KesTest;
using testing::Each;
using testing::StartsWith;

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

    bool hasRectangle(const Kes::RectangleF& rectangle)
    {
        return waitFor([&] { return shell._getProgramView()->getRectangle() == rectangle; },
                       std::chrono::seconds(3));
    }
};

TEST_F(ConfigTest, WritesRecentFilesThenRectangle)
{
    model.extension = "abc";
    EXPECT_EQ(path(), Kes::getKesCrossAppCacheDir() + "ShellModel.cfg");
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

TEST_F(ConfigTest, ProgramsWhoseModelsAreCalledTheSameHaveFilesOfTheirOwn)
{
    model.extension = "abc";
    const std::string taken = "<root><Rectangle>50;60;640;480</Rectangle></root>";
    writeFile(path(), taken);
    writeFile(path() + ".owner", "another-program");
    open();
    EXPECT_NE(shell._getProgramView()->getRectangle(), (Kes::RectangleF{50, 60, 640, 480}));
    shell._saveXmlConfig();
    EXPECT_EQ(readFile(path()), taken);
    const std::string own = Kes::getKesCrossAppCacheDir() + "ShellModel.ShellTests.cfg";
    EXPECT_TRUE(std::filesystem::exists(own));
    // The first of them keeps the name.
    std::filesystem::remove(path() + ".owner");
    shell._saveXmlConfig();
    EXPECT_NE(readFile(path()), taken);
    EXPECT_EQ(readFile(path() + ".owner"), "ShellTests");
}

struct ReadCase {
    /// "@" stands for the recent file.
    std::string text;
    bool hasRecentFile;
    bool hasRectangle;
    bool isWarned = false;
};

class ConfigReadTest : public ConfigTest, public testing::WithParamInterface<ReadCase> {};

TEST_P(ConfigReadTest, TakesWhatMakesSenseAndLogsWhatCannotBeRead)
{
    const auto& c = GetParam();
    model.extension = "abc";
    std::string text = c.text;
    if (const auto at = text.find('@'); at != std::string::npos)
        text.replace(at, 1, makeRecentFile("a.abc"));
    writeFile(path(), text);
    std::vector<std::string> warnings;
    const auto guiThread = std::this_thread::get_id();
    auto previous = KesLog::Log::setObserver([&](KesLog::Log::Level level, const std::string& warning) {
        if (level == KesLog::Log::Level::Warn && std::this_thread::get_id() == guiThread)
            warnings.push_back(warning);
    });
    open();
    KesLog::Log::setObserver(std::move(previous));
    EXPECT_EQ(model.getFileRecentManager()->getCollection().size(), c.hasRecentFile ? 1U : 0U);
    const Kes::RectangleF rectangle{50, 60, 640, 480};
    EXPECT_TRUE(c.hasRectangle ? hasRectangle(rectangle)
                               : shell._getProgramView()->getRectangle() != rectangle);
    EXPECT_EQ(warnings.size(), c.isWarned ? 1U : 0U);
    EXPECT_THAT(warnings, Each(StartsWith("Error loading program configuration:\n")));
}

INSTANTIATE_TEST_SUITE_P(
    Files, ConfigReadTest,
    testing::Values(
        ReadCase{"<any><More a='1'><Rectangle>1;2;3;4</Rectangle></More>\n"
                 " <Rectangle>50;60;640;480</Rectangle><Rectangle>1;2;300;400</Rectangle><RecentFiles>@</"
                 "RecentFiles></any>",
                 true, true},
        ReadCase{"<root><Rectangle>50;60;640</Rectangle><RecentFiles>@</RecentFiles></root>", true, false},
        ReadCase{"<root><RecentFiles>/no/such/file</RecentFiles><Rectangle/></root>", false, false},
        ReadCase{"", false, false, true}, ReadCase{"<root><Rectangle>", false, false, true},
        ReadCase{"<root>\xff</root>", false, false, true},
        ReadCase{"<!DOCTYPE root [<!ENTITY r '50;60;640;480'>]><root><Rectangle>&r;</Rectangle></root>",
                 false, false, true}));

TEST_F(ConfigTest, FailureToWriteLeavesTheProgramOpen)
{
    open();
    const auto folder = std::filesystem::path(path()).parent_path();
    // A file where the folder has to be fails for every user, root included.
    writeFile(folder, "");
    EXPECT_ANY_THROW(shell.requestClose());
    EXPECT_FALSE(record.has("model closing"));
    EXPECT_TRUE(isWindowSeen());
    // It is no dead end: the next request finds everything as it was.
    std::filesystem::remove(folder);
    shell.requestClose();
    EXPECT_TRUE(record.has("model closing"));
    EXPECT_TRUE(std::filesystem::exists(path()));
}

} // namespace
