#include <support/TemporaryHome.h>

#include <KesCommon/FileSystem.h>
#include <KesMeasure/ReportFile.h>

#include <giomm/init.h>
#include <glibmm/miscutils.h>
#include <glibmm/shell.h>
#include <glibmm/spawn.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

using KesMeasure::ReportFile;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* sheet = "report/test.xsl";
constexpr int manyRows = 40;

/// A report of so many rows with so many lines in each that a break between them would leave enough on both
/// sheets.
std::string makeData(const std::string& origin, const std::string& language, int rows)
{
    std::string filler;
    for (int line = 0; line < 5; ++line)
        filler += " " + std::string(70, 'x');
    std::ostringstream xml;
    const bool isRussian = language == "ru-RU";
    xml << "<report language='" << language << "' verdict='passed' outcome='All well' origin='" << origin
        << "' device='KESTO' startedAt='2020'><captions><line name='page' value='"
        << (isRussian ? "Страница " : "Page ") << "'/><line name='ofPages' value='"
        << (isRussian ? " из " : " of ") << "'/><line name='simulated' value='"
        << (isRussian ? "ИМИТИРУЕМОЕ УСТРОЙСТВО" : "SIMULATED DEVICE")
        << "'/><line name='unknown' value='ORIGIN UNKNOWN'/></captions><chart width='640' height='400'><x "
           "at='0' label='leftmost'/>"
           "<y at='0' label='topmost'/><band points='0,0 9,9 0,9'/><curve points='0,0 "
           "9,9'/></chart><results><column name='number' title='Rowhead' kind='word'/>"
           "<column name='text' title='Text' kind='word'/><column name='verdict' title='' kind='word'/>";
    for (int row = 1; row <= rows; ++row)
        xml << "<point number='row" << row << "' text='begin" << row << filler << " end" << row
            << "' mark='passed' verdict='well'/>";
    xml << "</results></report>";
    return xml.str();
}

std::vector<std::string> readPages(const std::string& pdf)
{
    std::string text;
    Glib::spawn_command_line_sync("pdftotext -layout " + Glib::shell_quote(pdf) + " -", &text);
    std::vector<std::string> pages;
    std::istringstream stream(text);
    for (std::string page; std::getline(stream, page, '\f');)
        pages.push_back(page);
    return pages;
}

bool isOn(const std::string& page, const std::string& word)
{
    std::istringstream words(page);
    return std::find(std::istream_iterator<std::string>(words), {}, word) !=
           std::istream_iterator<std::string>();
}

/// A PATH of the test's own, so that another program takes WeasyPrint's place, or none.
class PdfFailuresTest : public testing::Test {
protected:
    PdfFailuresTest()
    {
        std::filesystem::create_directory(home.file("bin"));
        KesTest::writeFile(path, "former");
        Glib::setenv("PATH", home.file("bin"));
    }
    ~PdfFailuresTest() override { Glib::setenv("PATH", _formerPath); }

    void installProgram(const std::string& script)
    {
        KesTest::writeFile(program, "#!/bin/sh\n" + script);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }

    std::string fail(const std::string& target)
    {
        const auto result = ReportFile::write(target, makeData("device", "en-US", 1), sheet);
        return result ? "no failure" : result.getError()->getMessage();
    }

    const KesTest::TemporaryHome home;
    const std::string path = home.file("report.pdf");
    const std::string program = home.file("bin/weasyprint");

private:
    const std::string _formerPath = Glib::getenv("PATH");
};

} // namespace

TEST(PdfReportTest, TellsOnEachPageWhatItIs)
{
    const KesTest::TemporaryHome home;
    const std::string path = home.file("made.PDF");
    struct Case {
        const char* origin;
        const char* language;
        const char* word;
        const char* number;
    };
    for (const auto& [origin, language, word, number] :
         {Case{"simulated", "en-US", "SIMULATED DEVICE", "Page 2 of "},
          Case{"simulated", "ru-RU", "ИМИТИРУЕМОЕ УСТРОЙСТВО", "Страница 2 из "},
          Case{"unknown", "en-US", "ORIGIN UNKNOWN", "Page 2 of "}}) {
        ASSERT_TRUE(ReportFile::write(path, makeData(origin, language, manyRows), sheet,
                                      {"/somewhere/Реле \"1\" <b>\\n.kovc", "Overcurrent 1.2.3"}));
        const auto pages = readPages(path);
        ASSERT_GE(pages.size(), 3U);
        EXPECT_THAT(pages[1], HasSubstr(number + std::to_string(pages.size())));
        for (const auto& page : pages)
            EXPECT_THAT(page,
                        AllOf(HasSubstr(word), HasSubstr("Реле \"1\" <b>\\n.kovc · Overcurrent 1.2.3")));
    }
    ASSERT_TRUE(ReportFile::write(path, makeData("device", "en-US", 1), sheet));
    EXPECT_THAT(readPages(path), testing::Each(AllOf(HasSubstr("made.PDF"), Not(HasSubstr("SIMULATED")))));
}

TEST(PdfReportTest, BreaksBetweenRowsOnlyAndRepeatsTheirHead)
{
    const KesTest::TemporaryHome home;
    const std::string path = home.file("report.pdf");
    ASSERT_TRUE(ReportFile::write(path, makeData("simulated", "en-US", manyRows), sheet));
    int rows = 0;
    int charts = 0;
    for (const auto& page : readPages(path)) {
        const int rowsBefore = rows;
        for (int row = 1; row <= manyRows; ++row) {
            const auto number = std::to_string(row);
            EXPECT_EQ(isOn(page, "begin" + number), isOn(page, "end" + number)) << row;
            rows += isOn(page, "row" + number);
        }
        EXPECT_EQ(isOn(page, "Rowhead"), rows > rowsBefore) << page;
        EXPECT_EQ(isOn(page, "leftmost"), isOn(page, "topmost"));
        charts += isOn(page, "topmost");
    }
    EXPECT_EQ(rows, manyRows);
    EXPECT_EQ(charts, 1);
}

TEST(PdfReportTest, AFileThatCannotBeWrittenIsAnError)
{
    const KesTest::TemporaryHome home;
    const auto data = makeData("device", "en-US", 1);
    std::filesystem::create_symlink("/dev/full", home.file("full.pdf"));
    EXPECT_FALSE(ReportFile::write(home.file("full.pdf"), data, sheet));
    EXPECT_FALSE(ReportFile::write(home.file("missing/report.pdf"), data, sheet));
    EXPECT_FALSE(Kes::fileExist(home.file("missing")));
}

TEST_F(PdfFailuresTest, WithoutWeasyPrintTheUserIsToldWhatToInstall)
{
    EXPECT_THAT(fail(path), HasSubstr("Install the package “weasyprint”"));
    EXPECT_EQ(KesTest::readFile(path), "former");
    // HTML needs it not.
    EXPECT_EQ(fail(home.file("report.html")), "no failure");
}

TEST_F(PdfFailuresTest, AFailureOfWeasyPrintIsToldAndLeavesTheFormerReport)
{
    installProgram("for last; do :; done; echo half > \"$last\"\n"
                   "echo Traceback >&2; echo 'OSError: [Errno 28] No space left on device' >&2; exit 1\n");
    EXPECT_THAT(fail(path), HasSubstr("could not make the PDF file: OSError: [Errno 28] No space left"));
    installProgram("exit 0\n");
    EXPECT_THAT(fail(path), HasSubstr("could not be made"));
    EXPECT_EQ(KesTest::readFile(path), "former");
}

TEST_F(PdfFailuresTest, CancellingEndsWeasyPrint)
{
    installProgram("exec /bin/sleep 60\n");
    Gio::init();
    const auto cancellable = Gio::Cancellable::create();
    cancellable->cancel();
    const auto result = ReportFile::write(path, makeData("device", "en-US", 1), sheet, {}, cancellable);
    EXPECT_FALSE(result);
    EXPECT_FALSE(result.getError());
    EXPECT_EQ(KesTest::readFile(path), "former");
}
