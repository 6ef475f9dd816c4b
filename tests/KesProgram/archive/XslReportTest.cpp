#include "support/TemporaryHome.h"

#include <KesCommon/Directories.h>
#include <KesProgram/archive/XslReportManager.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using namespace KesProgram;
using KesTest::readFile;
using KesTest::writeFile;

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
    writeFile(usual, std::string(1000, 'x'));
    EXPECT_EQ(reports.createReport(home.file("data.xml"), ""), usual);
    EXPECT_EQ(readFile(usual), readFile(wanted));
    // The path comes back even when there is no report.
    const auto path = home.file("data.xml/report.html");
    EXPECT_EQ(reports.createReport(home.file("missing.xml"), path), path);
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
