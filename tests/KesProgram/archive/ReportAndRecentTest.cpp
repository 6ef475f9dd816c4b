#include "support/TemporaryHome.h"

#include <KesCommon/Directories.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/archive/XslReportManager.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace KesProgram;
using KesTest::readFile;
using KesTest::writeFile;

TEST(FileRecentManager, TakesInOnlyPathsThatExist)
{
    KesTest::TemporaryHome home;
    FileRecentManager recent(2);
    const auto file = home.file("Архив.abc");
    writeFile(file, "");
    std::filesystem::create_symlink("nowhere", home.file("broken"));
    EXPECT_FALSE(recent.tryAdd(home.file("missing")));
    EXPECT_FALSE(recent.tryAdd(home.file("broken")));
    EXPECT_FALSE(recent.tryAdd(file + "/inside"));
    EXPECT_TRUE(recent.tryAdd(home.getPath().string()));
    EXPECT_TRUE(recent.tryAdd(file));
    EXPECT_EQ(recent.getLast(), file);

    const auto text = recent.serialize();
    std::filesystem::remove(file);
    FileRecentManager restored(2);
    restored.deserialize(text);
    EXPECT_EQ(restored.getCollection(), std::vector<std::string>{home.getPath().string()});
}

TEST(XslReportManager, WritesTheReportWhereItIsWanted)
{
    KesTest::TemporaryHome home;
    writeFile(home.file("data.xml"), "<test><value>5,2</value></test>");
    writeFile(home.file("report.xsl"),
              "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
              "<xsl:output method='html'/><xsl:template match='/'><p><xsl:value-of select='test/value'/></p>"
              "</xsl:template></xsl:stylesheet>");
    XslReportManager reports(home.file("report.xsl"));

    const auto wanted = home.file("Новая папка/ещё одна/report.html");
    EXPECT_EQ(reports.createReport(home.file("data.xml"), wanted), wanted);
    EXPECT_NE(readFile(wanted).find("<p>5,2</p>"), std::string::npos);

    const auto usual = Kes::getKesCrossDocDir() + "report.html";
    EXPECT_EQ(reports.createReport(home.file("data.xml"), ""), usual);
    EXPECT_NE(readFile(usual).find("<p>5,2</p>"), std::string::npos);
    writeFile(home.file("data.xml"), "<test><value>6</value></test>");
    reports.createReport(home.file("data.xml"), "");
    EXPECT_NE(readFile(usual).find("<p>6</p>"), std::string::npos);
}

TEST(XslReportManager, ReturnsThePathEvenWithoutAReport)
{
    KesTest::TemporaryHome home;
    XslReportManager reports(home.file("missing.xsl"));
    const auto path = home.file("folder/report.html");
    EXPECT_EQ(reports.createReport(home.file("missing.xml"), path), path);
    EXPECT_FALSE(std::filesystem::exists(path));
    writeFile(home.file("file"), "");
    EXPECT_EQ(reports.createReport(home.file("missing.xml"), home.file("file/report.html")),
              home.file("file/report.html"));
}

} // namespace
