#include "support/TemporaryHome.h"

#include <KesCommon/Directories.h>
#include <KesProgram/archive/XslReportManager.h>

#include <gtest/gtest.h>

namespace {

using KesTest::readFile;
using KesTest::writeFile;

TEST(XslReportManager, WritesTheReportWhereItIsWantedAndTellsWhere)
{
    const KesTest::TemporaryHome home;
    writeFile(home.file("data.xml"), "<test>5,2</test>");
    writeFile(home.file("report.xsl"),
              "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
              "<xsl:output method='text'/></xsl:stylesheet>");
    KesProgram::XslReportManager reports(home.file("report.xsl"));
    const auto wanted = home.file("Новая папка/ещё одна/report.html");
    const auto usual = Kes::getKesCrossDocDir() + "report.html";
    EXPECT_EQ(reports.createReport(home.file("data.xml"), wanted), wanted);
    EXPECT_EQ(reports.createReport(home.file("data.xml"), ""), usual);
    EXPECT_EQ(readFile(wanted), "5,2");
    EXPECT_EQ(readFile(usual), "5,2");
    // The path comes back even when there is no report.
    const auto path = home.file("data.xml/report.html");
    EXPECT_EQ(reports.createReport(home.file("missing.xml"), path), path);
    EXPECT_EQ(readFile(path), "");
}

} // namespace
