#include <support/Message.h>
#include <support/TemporaryHome.h>

#include <KesCommon/FileSystem.h>
#include <KesMeasure/ReportFile.h>

#include <giomm/init.h>
#include <glibmm/miscutils.h>
#include <glibmm/shell.h>
#include <glibmm/spawn.h>
#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

using KesMeasure::ReportFile;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr int manyRows = 40;

/// A report of so many rows with so many lines in each that a break between them would leave enough on both
/// sheets.
std::string makeData(const std::string& origin, const std::string& language, int rows)
{
    const bool isRussian = language == "ru-RU";
    std::ostringstream xml;
    xml << "<report language='" << language << "' verdict='passed' outcome='All well' origin='" << origin
        << "' device='KESTO' startedAt='2020'><captions><line name='page' value='"
        << (isRussian ? "Страница " : "Page ") << "'/><line name='ofPages' value='"
        << (isRussian ? " из " : " of ") << "'/><line name='simulated' value='"
        << (isRussian ? "ИМИТИРУЕМОЕ УСТРОЙСТВО" : "SIMULATED DEVICE")
        << "'/><line name='unknown' value='ORIGIN UNKNOWN'/></captions><chart width='640' height='400'>"
           "<x at='0' label='leftmost'/><y at='0' label='topmost'/><band points='0,0 9,9 0,9'/>"
           "<curve points='0,0 9,9'/></chart><results><column name='number' title='Rowhead' kind='word'/>"
           "<column name='text' title='Text' kind='word'/><column name='verdict' title='' kind='word'/>";
    for (int row = 1; row <= rows; ++row) {
        xml << "<point mark='passed' verdict='well' number='row" << row << "' text='begin" << row;
        for (int line = 0; line < 5; ++line)
            xml << " " << std::string(70, 'x');
        xml << " end" << row << "'/>";
    }
    xml << "</results></report>";
    return xml.str();
}

const auto oneRow = makeData("device", "en-US", 1);

/// Their words between spaces.
std::vector<std::string> readPages(const std::string& pdf)
{
    std::string text;
    Glib::spawn_command_line_sync("pdftotext -layout " + Glib::shell_quote(pdf) + " -", &text);
    std::vector<std::string> pages;
    std::istringstream stream(text);
    for (std::string page; std::getline(stream, page, '\f'); pages.push_back(" " + page))
        for (auto& character : page)
            character = character == '\n' ? ' ' : character;
    return pages;
}

/// There is a former report.
class ReportFileTest : public testing::Test {
protected:
    ReportFileTest() { KesTest::writeFile(path, "former"); }

    std::string fail(const std::string& target, const std::string& data = oneRow,
                     const std::string& sheet = "report/test.xsl")
    {
        const auto result = ReportFile::write(target, data, sheet);
        return result ? "no failure" : KesTest::message(result);
    }
    std::vector<std::string> print(const std::string& data, const ReportFile::Foot& foot = {})
    {
        EXPECT_EQ(KesTest::message(ReportFile::write(path, data, "report/test.xsl", foot)), "");
        return readPages(path);
    }

    const KesTest::TemporaryHome home;
    const std::string path = home.file("report.PDF");
};

/// A PATH of the test's own, so that another program takes WeasyPrint's place, or none.
class PdfFailuresTest : public ReportFileTest {
protected:
    PdfFailuresTest() { Glib::setenv("PATH", home.file("bin")); }
    ~PdfFailuresTest() override
    {
        EXPECT_EQ(KesTest::readFile(path), "former");
        Glib::setenv("PATH", _formerPath);
    }

    void installProgram(const std::string& script)
    {
        KesTest::writeFile(home.file("bin/weasyprint"), "#!/bin/sh\n" + script);
        std::filesystem::permissions(home.file("bin/weasyprint"), std::filesystem::perms::owner_all);
    }

private:
    const std::string _formerPath = Glib::getenv("PATH");
};

} // namespace

TEST_F(ReportFileTest, TellsOnEachPageWhatItIs)
{
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
        const auto pages = print(makeData(origin, language, manyRows),
                                 {"/somewhere/Реле \"1\" <b>\\n.kovc", "Overcurrent 1.2.3"});
        ASSERT_GE(pages.size(), 3U);
        EXPECT_THAT(pages[1], HasSubstr(number + std::to_string(pages.size())));
        EXPECT_THAT(pages, testing::Each(AllOf(HasSubstr(word),
                                               HasSubstr("Реле \"1\" <b>\\n.kovc · Overcurrent 1.2.3"))));
    }
    EXPECT_THAT(print(oneRow), testing::Each(AllOf(HasSubstr("report.PDF"), Not(HasSubstr("SIMULATED")))));
}

TEST_F(ReportFileTest, BreaksBetweenRowsOnlyAndRepeatsTheirHead)
{
    int rows = 0;
    int charts = 0;
    for (const auto& page : print(makeData("simulated", "en-US", manyRows))) {
        const auto has = [&page](const std::string& word) {
            return page.find(" " + word + " ") != std::string::npos;
        };
        const int rowsBefore = rows;
        for (int row = 1; row <= manyRows; ++row) {
            const auto number = std::to_string(row);
            EXPECT_EQ(has("begin" + number), has("end" + number)) << row;
            rows += has("row" + number);
        }
        EXPECT_EQ(has("Rowhead"), rows > rowsBefore) << page;
        EXPECT_EQ(has("leftmost"), has("topmost"));
        charts += has("topmost");
    }
    EXPECT_EQ(rows, manyRows);
    EXPECT_EQ(charts, 1);
}

TEST_F(ReportFileTest, AFileThatCannotBeWrittenIsAnError)
{
    std::filesystem::create_symlink("/dev/full", home.file("full.pdf"));
    for (const std::string& target : {std::string("/dev/full"), home.file("full.pdf"),
                                      home.file("missing/report.html"), path + "/report.html"})
        EXPECT_NE(fail(target), "no failure") << target;
    EXPECT_FALSE(Kes::fileExist(home.file("missing")));
}

TEST_F(PdfFailuresTest, ADocumentOrAStylesheetWithoutSenseLeavesTheFormerReport)
{
    const auto html = home.file("report.html");
    EXPECT_EQ(fail(html), "no failure") << "without WeasyPrint";
    const auto former = KesTest::readFile(html);
    EXPECT_NE(fail(html, "<report"), "no failure");
    EXPECT_NE(fail(html, oneRow, "report/none.xsl"), "no failure");
    EXPECT_EQ(KesTest::readFile(html), former);
}

TEST_F(PdfFailuresTest, AFailureOfWeasyPrintIsTold)
{
    EXPECT_THAT(fail(path), HasSubstr("Install the package “weasyprint”"));
    installProgram("for last; do :; done; echo half > \"$last\"\n"
                   "echo Traceback >&2; echo 'OSError: [Errno 28] No space left on device' >&2; exit 1\n");
    EXPECT_THAT(fail(path), HasSubstr("could not make the PDF file: OSError: [Errno 28] No space left"));
    installProgram("exit 0\n");
    EXPECT_THAT(fail(path), HasSubstr("could not be made"));
}

TEST_F(PdfFailuresTest, CancellingEndsWeasyPrint)
{
    installProgram("exec /bin/sleep 60\n");
    Gio::init();
    const auto cancellable = Gio::Cancellable::create();
    cancellable->cancel();
    const auto result = ReportFile::write(path, oneRow, "report/test.xsl", {}, cancellable);
    EXPECT_FALSE(result || result.getError());
}
