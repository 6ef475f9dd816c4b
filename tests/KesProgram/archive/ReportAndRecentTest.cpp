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
    for (const std::string value : {"1", "2"}) {
        writeFile(home.file("data.xml"), "<test><value>" + value + "</value></test>");
        EXPECT_EQ(reports.createReport(home.file("data.xml"), ""), usual);
        EXPECT_NE(readFile(usual).find("<p>" + value + "</p>"), std::string::npos);
    }
    // The path comes back even when there is no report.
    for (const auto& path : {home.file("other/report.html"), home.file("data.xml/report.html")}) {
        EXPECT_EQ(reports.createReport(home.file("missing.xml"), path), path);
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

} // namespace
