#include <KesMeasure/ResultFile.h>
#include <KesMeasure/XmlAttributes.h>

#include <support/LanguageScope.h>
#include <support/TemporaryHome.h>

#include <libxml++/libxml++.h>

#include <gmock/gmock.h>

#include <filesystem>

using namespace KesMeasure;
using ResultFile::Kind;
using testing::HasSubstr;
using testing::Not;

namespace {

/// With everything in it that a form could stumble over.
TestSummary someSummary()
{
    TestSummary summary;
    summary.program = "kes-test";
    summary.verdict = Verdict::Failed;
    summary.outcome = "1 of \"2\" <good>";
    summary.circumstances = TestCircumstances();
    summary.circumstances->device = "KESTO-3, No. 00017";
    summary.circumstances->origin = Origin::Simulated;
    summary.circumstances->startedAt = "2026-11-20 14:05:09";
    summary.checksum = "abc";
    summary.nameplate = {{"place", "Nord\\Süd\t\"1\""}, {"comment", "one\ntwo\x01\xFF]]>"}};
    auto& table = summary.table;
    table.columns = {{"number", "No."},
                     {"object", "Stage", false},
                     {"band", "Permitted", true, true},
                     {"measured", "Measured"},
                     {"verdict", "Verdict", false}};
    table.rows = {{{"1", "U>, \"59\"", "99,0 … 102,0", "+101,5", "В допуске"},
                   Mark::Passed,
                   "over.pickUp",
                   {"99,0", "102,0", "В"}},
                  {{"2", "=a\nb", "±0,05", "—", "Not reset"}, Mark::Failed, "over.time", {"0,05", "", "s"}},
                  {{"3", "", "", "", ""}, Mark::None, "rate"}};
    table.values = {
        {"Ratio", "0,950 (0,940 … 0,960)", "Passed", Mark::Passed, "ratio", 0.95, "", {"0,900", "1", ""}},
        {"Pick-up", "-", "", Mark::None, "pickUp"}};
    return summary;
}

/// The counts of the suite, and the kind of problem of each case.
std::string readJUnit(const std::string& text)
{
    std::string all;
    EXPECT_TRUE(readXml(text, "testsuites", [&all](const xmlpp::Element& root) {
        const auto& suite = dynamic_cast<const xmlpp::Element&>(*root.get_first_child("testsuite"));
        for (const char* count : {"tests", "failures", "errors", "skipped"})
            all += suite.get_attribute_value(count).raw() + " ";
        for (const auto* child : suite.get_children("testcase")) {
            const auto& element = dynamic_cast<const xmlpp::Element&>(*child);
            std::string problem;
            for (const auto* inside : element.get_children())
                if (dynamic_cast<const xmlpp::Element*>(inside))
                    problem += "!" + inside->get_name().raw();
            all += element.get_attribute_value("name").raw() + problem + " ";
        }
        return true;
    }));
    return all;
}

} // namespace

TEST(ResultFileTest, TheTableIsTheSameForEveryReaderOfTables)
{
    const auto text = ResultFile::toText(Kind::Csv, someSummary());
    EXPECT_EQ(
        text,
        "id,number,object,from,to,bandUnit,measured,verdict,value,valueUnit,mark,origin,device,startedAt\r\n"
        "over.pickUp,1,\"U>, \"\"59\"\"\",99.0,102.0,В,+101.5,В допуске,,,passed,simulated,"
        "\"KESTO-3, No. 00017\",2026-11-20 14:05:09\r\n"
        "over.time,2,\"=a\nb\",0.05,,s,,Not reset,,,failed,simulated,\"KESTO-3, No. 00017\","
        "2026-11-20 14:05:09\r\n"
        "rate,3,,,,,,,,,none,simulated,\"KESTO-3, No. 00017\",2026-11-20 14:05:09\r\n"
        "ratio,,,0.900,1,,,Passed,0.95,,passed,simulated,\"KESTO-3, No. 00017\",2026-11-20 14:05:09\r\n"
        "pickUp,,,,,,,,,,none,simulated,\"KESTO-3, No. 00017\",2026-11-20 14:05:09\r\n");
    auto untested = someSummary();
    untested.circumstances.reset();
    EXPECT_THAT(ResultFile::toText(Kind::Csv, untested), HasSubstr(",failed,,,\r\n"));
}

TEST(ResultFileTest, DataHoldsNumbersAndEscapesWhatIsNoText)
{
    const auto text = ResultFile::toText(Kind::Json, someSummary());
    for (const char* part :
         {R"("outcome": "1 of \"2\" <good>")", R"("place": "Nord\\Süd\u0009\"1\"")",
          R"("comment": "one\u000atwo��]]>")", R"("measured": 101.5)", R"("measured": null)",
          R"("from": 99,)", R"("to": 102,)", R"("bandUnit": "В")", R"("from": 0.9,)", R"("number": 3)",
          R"("value": 0.95)", R"("value": null)", R"("origin": "simulated")", R"("changedByHand": false)"})
        EXPECT_THAT(text, HasSubstr(part));
    const TestSummary nothing;
    EXPECT_EQ(ResultFile::toText(Kind::Json, nothing),
              "{\n  \"program\": \"\",\n  \"verdict\": \"none\",\n  \"outcome\": \"\",\n"
              "  \"nameplate\": {},\n  \"rows\": [],\n  \"values\": []\n}\n");
    const KesTest::LanguageScope russian(lng::Russian);
    EXPECT_EQ(ResultFile::toText(Kind::Json, someSummary()), text) << "in both languages";
}

TEST(ResultFileTest, NoTestCaseIsGreenThatIsNot)
{
    auto summary = someSummary();
    EXPECT_EQ(readJUnit(ResultFile::toText(Kind::JUnit, summary)),
              "6 2 0 2 over.pickUp over.time!failure rate!skipped ratio pickUp!skipped test!failure ");
    EXPECT_THAT(ResultFile::toText(Kind::JUnit, summary), HasSubstr("timestamp=\"2026-11-20T14:05:09\""));
    summary.table = {};
    const auto read = [&summary](Verdict verdict) {
        summary.verdict = verdict;
        return readJUnit(ResultFile::toText(Kind::JUnit, summary));
    };
    EXPECT_EQ(read(Verdict::Passed), "1 0 0 0 test ");
    EXPECT_EQ(read(Verdict::Stopped), "1 0 1 0 test!error ");
    EXPECT_EQ(read(Verdict::Fault), "1 0 1 0 test!error ");
    EXPECT_EQ(read(Verdict::None), "1 0 0 1 test!skipped ");
    summary.circumstances->foreignChecksum = "0123";
    EXPECT_EQ(read(Verdict::Passed), "1 0 1 0 test!error ") << "changed by hand";
    EXPECT_EQ(read(Verdict::Failed), "1 1 0 0 test!failure ");
}

TEST(ResultFileTest, TheNameTellsTheKindAndAFailureKeepsTheFormerFile)
{
    EXPECT_EQ(ResultFile::findKind("/a.b/r.CSV"), Kind::Csv);
    EXPECT_EQ(ResultFile::findKind("r.xml"), Kind::JUnit);
    for (const char* name : {"r.json/file", "json", "r.html", "r.csv.gz", ""}) {
        EXPECT_FALSE(ResultFile::findKind(name)) << name;
        const auto result = ResultFile::write(name, {});
        EXPECT_FALSE(result);
        EXPECT_THAT(result.getError()->getMessage(), HasSubstr(".csv, .json or .xml"));
    }
    const KesTest::TemporaryHome home;
    const auto full = home.file("full.csv");
    std::filesystem::create_symlink("/dev/full", full);
    EXPECT_FALSE(ResultFile::write(full, someSummary()));
    EXPECT_FALSE(ResultFile::write(home.file("missing/r.json"), someSummary()));
    const auto path = home.file("r.json");
    KesTest::writeFile(path, "former");
    ASSERT_TRUE(ResultFile::write(path, someSummary()));
    EXPECT_EQ(KesTest::readFile(path), ResultFile::toText(Kind::Json, someSummary()));
}
