#include <support/TemporaryHome.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesMeasure/ReportFile.h>

#include <gtest/gtest.h>

using KesMeasure::ReportFile;

TEST(ReportFileTest, AFileThatCannotBeWrittenIsAnError)
{
    const KesTest::TemporaryHome home;
    const std::string sheet = "report/test.xsl";
    EXPECT_FALSE(ReportFile::write("/dev/full", "<report/>", sheet));
    EXPECT_FALSE(ReportFile::write(home.file("missing/report.html"), "<report/>", sheet));
    EXPECT_FALSE(Kes::fileExist(home.file("missing")));
    KesTest::writeFile(home.file("plain"), "a file");
    EXPECT_FALSE(ReportFile::write(home.file("plain/report.html"), "<report/>", sheet));
}

TEST(ReportFileTest, ADocumentOrAStylesheetWithoutSenseLeavesTheFormerReport)
{
    const KesTest::TemporaryHome home;
    const std::string path = home.file("report.html");
    KesTest::writeFile(path, "former");
    EXPECT_FALSE(ReportFile::write(path, "<report", "report/test.xsl"));
    EXPECT_FALSE(ReportFile::write(path, "<report/>", "report/none.xsl"));
    EXPECT_EQ(KesTest::readFile(path), "former");
}
