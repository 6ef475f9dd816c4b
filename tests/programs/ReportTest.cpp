#include <Overcurrent/data/DataSummary.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/report/ReportDocument.h>

#include <support/LanguageScope.h>
#include <support/TemporaryHome.h>

#include <KesMeasure/ReportFile.h>
#include <KesMeasure/ScreenNumber.h>

#include <gmock/gmock.h>

using namespace Overcurrent;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

TestResults someResults()
{
    TestResults results;
    results.plan.multiples = {2.0, 5.0, 7.0, 10.0, 20.0};
    results.points = {{{Fault::A, 2.0}, MeasureState::Measured, std::chrono::milliseconds(10100)},
                      {{Fault::A, 5.0}, MeasureState::NoOperation, {}},
                      {{Fault::A, 7.0}, MeasureState::NotReset, {}},
                      {{Fault::A, 10.0}, MeasureState::Measured, std::chrono::milliseconds(1234)},
                      {{Fault::A, 20.0}, MeasureState::Measured, std::chrono::milliseconds(567)}};
    results.end = RunEnd::Stopped;
    results.device = "KESTO-3 <b>No.</b> 00017";
    results.origin = Origin::Simulated;
    return results;
}

class ReportTest : public testing::Test {
protected:
    std::string make(const TestResults* results)
    {
        const RelaySettings settings;
        const auto data = ReportDocument::create(settings, TestPlan(), results, false, {{"Place", "North"}});
        const auto written = KesMeasure::ReportFile::write(home.file("made.html"), data, "report/test.xsl");
        EXPECT_TRUE(written) << (written ? "" : written.getError()->getMessage());
        return KesTest::readFile(home.file("made.html"));
    }

    KesTest::TemporaryHome home;
};

/// The row of a table that holds the text.
std::string rowWith(const std::string& report, const std::string& text)
{
    const auto at = report.find(text);
    if (at == std::string::npos)
        return {};
    const auto begin = report.rfind("<tr", at);
    return report.substr(begin, report.find("</tr>", at) - begin);
}

std::size_t count(const std::string& report, const std::string& text)
{
    std::size_t found = 0;
    for (auto at = report.find(text); at != std::string::npos; at = report.find(text, at + 1))
        ++found;
    return found;
}

} // namespace

TEST(SettingsSummaryTest, ShowsTheDigitsThatTellValuesApart)
{
    const auto multiples = {2.0, 1.5, 1.125, 1.001, 1.005, 100.0 / 3.0};
    std::string texts;
    for (const double multiple : multiples)
        texts += KesMeasure::ScreenNumber::multiple(multiple) + " ";
    EXPECT_EQ(texts, "2.00 1.50 1.125 1.001 1.005 33.333 ");
    const RampResult ramp{MeasureState::Measured, 1.02, 1.00};
    EXPECT_EQ(SettingsSummary::intervalText(0.05, ramp), "0.0505 A (1.00 … 1.02 × Is)");
    const RampResult falling{MeasureState::Measured, 19.0, 21.0};
    EXPECT_EQ(SettingsSummary::intervalText(0.05, falling), "1.000 A (19.00 … 21.00 × Is)");
}

TEST(DataSummaryTest, CountsWhatIsMeasured)
{
    EXPECT_EQ(DataSummary::text({}), "settings and plan");
    TestResults results;
    results.startedAt = "2026-11-20 14:05:09";
    EXPECT_EQ(DataSummary::text(results), "settings and plan");
    results.pickUp.emplace();
    EXPECT_EQ(DataSummary::text(results), "1 result of 2026-11-20 14:05");
}

TEST_F(ReportTest, HoldsEverythingAndNeedsNothingElse)
{
    const auto results = someResults();
    const std::string report = make(&results);
    EXPECT_THAT(report,
                AllOf(HasSubstr("SIMULATED DEVICE"), HasSubstr("Test stopped before its end"),
                      HasSubstr("10.100"), HasSubstr(">9.26\u00A0…\u00A010.85<"), HasSubstr("No operation"),
                      HasSubstr("Not reset"), HasSubstr("time not measured"), HasSubstr("<svg"),
                      HasSubstr("North"), HasSubstr("KESTO-3 &lt;b&gt;No.&lt;/b&gt; 00017"),
                      HasSubstr("Standard inverse")));
    EXPECT_THAT(report, AllOf(Not(HasSubstr("<script")), Not(HasSubstr("<link")), Not(HasSubstr("src="))));
    const KesTest::LanguageScope scope(lng::Russian);
    EXPECT_THAT(make(&results),
                AllOf(HasSubstr("ИМИТИРУЕМОЕ УСТРОЙСТВО"), HasSubstr("Протокол проверки"),
                      HasSubstr("10,100"), HasSubstr("lang=\"ru\""), Not(HasSubstr("Test "))));
}

TEST_F(ReportTest, MarksWhatHasPassedAndWhatHasFailed)
{
    const auto results = someResults();
    const std::string report = make(&results);
    EXPECT_THAT(rowWith(report, "10.100"),
                AllOf(HasSubstr("<tr class=\"passed\">"), HasSubstr("mark-passed\">✔\u00A0Passed")));
    EXPECT_THAT(rowWith(report, "1.234"),
                AllOf(HasSubstr("<tr class=\"failed\">"), HasSubstr("mark-failed\">✘\u00A0")));
    // Long times stand above.
    EXPECT_THAT(report, HasSubstr("y=\"0.00\" dy=\"4\">50<"));
    // In the chart and in its legend.
    EXPECT_EQ(count(report, "r=\"5\" fill=\"#1f7a3d\""), 2u) << "passed";
    EXPECT_EQ(count(report, "M-5-5H5V5H-5Z"), 3u) << "failed";
    EXPECT_EQ(count(report, "M0-6L6 5H-6Z"), 3u) << "not measured";
}

TEST_F(ReportTest, HoldsOnlyWhatThereIs)
{
    auto results = someResults();
    results.origin = Origin::Unknown;
    EXPECT_THAT(make(&results), HasSubstr("may come from a simulated bench"));
    EXPECT_THAT(make(&results), HasSubstr("Pick-up and drop-off"));
    results.settings.rampContact = RampContactKind::NoRamps;
    EXPECT_THAT(make(&results), Not(HasSubstr("Pick-up and drop-off")));
    EXPECT_THAT(make(nullptr), AllOf(HasSubstr("No test has been made"), Not(HasSubstr("Operate times"))));
}
