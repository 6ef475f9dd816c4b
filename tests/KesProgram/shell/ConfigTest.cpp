#include "ShellTest.h"

#include <KesCommon/Directories.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/views/IProgramView.h>

#include <gmock/gmock.h>
#include <libxml++/libxml++.h>

#include <filesystem>
#include <stdexcept>

namespace KesTest {

/// Outside the unnamed namespace: its name becomes a file name.
class OtherShellModel : public ShellModel {
public:
    using ShellModel::ShellModel;
};

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
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

    std::vector<std::string> recentFiles() { return model.getFileRecentManager()->getCollection(); }

    bool hasRectangle(const Kes::RectangleF& rectangle)
    {
        return waitFor([&] { return shell._getProgramView()->getRectangle() == rectangle; },
                       std::chrono::seconds(3));
    }
};

TEST_F(ConfigTest, EachModelClassHasItsFile)
{
    EXPECT_EQ(path(), Kes::getKesCrossAppCacheDir() + "ShellModel.cfg");
    Record otherRecord;
    OtherShellModel otherModel(otherRecord);
    ShellPresenter other(otherModel, otherRecord);
    EXPECT_EQ(other._getXmlConfigFullPath(), Kes::getKesCrossAppCacheDir() + "OtherShellModel.cfg");
}

TEST_F(ConfigTest, WritesRecentFilesThenRectangle)
{
    model.extension = "abc";
    const std::string recent = makeRecentFile("a b&<\xd1\x84>.abc");
    open();
    ASSERT_TRUE(model.getFileRecentManager()->tryAdd(home.file("a b&<\xd1\x84>.abc")));
    shell._getProgramView()->setRectangle({50, 60, 640, 480});
    ASSERT_TRUE(hasRectangle({50, 60, 640, 480}));
    shell._saveXmlConfig();
    const std::string text = readFile(path());
    EXPECT_EQ(text, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root>\n  <RecentFiles>" + recent +
                        "</RecentFiles>\n  <Rectangle>50;60;640;480</Rectangle>\n</root>\n");
}

TEST_F(ConfigTest, WhatIsNotThereIsNotWritten)
{
    model.extension = "abc";
    open();
    shell._saveXmlConfig();
    EXPECT_THAT(readFile(path()), testing::Not(HasSubstr("RecentFiles")));
    EXPECT_THAT(readFile(path()), HasSubstr("<Rectangle>"));
}

TEST_F(ConfigTest, ModelWithoutArchiveIgnoresRecentFiles)
{
    writeFile(path(), "<root><RecentFiles>" + makeRecentFile("a.abc") + "</RecentFiles></root>");
    open();
    EXPECT_THAT(recentFiles(), IsEmpty());
    model.getFileRecentManager()->tryAdd(home.file("a.abc"));
    shell._saveXmlConfig();
    EXPECT_THAT(readFile(path()), testing::Not(HasSubstr("RecentFiles")));
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
    EXPECT_EQ(recentFiles().size(), c.hasRecentFile ? 1U : 0U);
    const Kes::RectangleF rectangle{50, 60, 640, 480};
    if (c.hasRectangle) {
        EXPECT_TRUE(hasRectangle(rectangle));
    } else {
        EXPECT_NE(shell._getProgramView()->getRectangle(), rectangle);
    }
    EXPECT_THAT(warnings.get(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Files, ConfigReadTest,
    testing::Values(
        ReadCase{"both", "<root><RecentFiles>@</RecentFiles><Rectangle>50;60;640;480</Rectangle></root>",
                 true, true},
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
                 "<root><RecentFiles>/no/such/file</RecentFiles><Rectangle>50;60;640;480</Rectangle></root>",
                 false, true},
        ReadCase{"otherRoot", "<any><Rectangle>50;60;640;480</Rectangle></any>", false, true},
        ReadCase{"nothing", "<root/>", false, false}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_F(ConfigTest, BrokenFilesAreWarningsInTheLog)
{
    for (const std::string text : {"", "rubbish", "<root><Rectangle>", "<root>\xff</root>"}) {
        SCOPED_TRACE(text);
        writeFile(path(), text);
        const LogWarnings warnings;
        Record otherRecord;
        ShellModel otherModel(otherRecord);
        ShellPresenter other(otherModel, otherRecord);
        other.open(nullptr);
        EXPECT_THAT(warnings.get(), testing::Contains(StartsWith("Error loading program configuration:\n")));
        otherModel.close();
        EXPECT_TRUE(waitFor([&] { return otherRecord.has("closed"); }));
    }
    std::filesystem::remove(path());
    const LogWarnings warnings;
    open();
    EXPECT_THAT(warnings.get(), testing::Contains(StartsWith("Error loading program configuration:\n")));
}

TEST_F(ConfigTest, ExceptionThatIsNoStandardOneIsLoggedWithoutDetails)
{
    class Throwing : public ShellPresenter {
    public:
        using ShellPresenter::ShellPresenter;
        void _extractXmlConfig(xmlpp::Element*) override { throw 1; }
    };
    writeFile(path(), "<root/>");
    Throwing throwing(model, record);
    const LogWarnings warnings;
    throwing.open(nullptr);
    EXPECT_THAT(warnings.get(), testing::Contains("Error loading program configuration"));
    model.close();
    EXPECT_TRUE(waitFor([this] { return record.has("closed"); }));
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
    shell.requestClose();
    EXPECT_TRUE(record.has("model closing"));
    EXPECT_TRUE(std::filesystem::exists(path()));
}

TEST_F(ConfigTest, FullDiskIsAFailure)
{
    open();
    std::filesystem::create_directories(std::filesystem::path(path()).parent_path());
    std::filesystem::create_symlink("/dev/full", path());
    EXPECT_ANY_THROW(shell._saveXmlConfig());
}

} // namespace

} // namespace KesTest
