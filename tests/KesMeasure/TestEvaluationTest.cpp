#include <KesMeasure/TestEvaluation.h>

#include <support/LanguageScope.h>

#include <gmock/gmock.h>

using namespace KesMeasure;
using testing::HasSubstr;

namespace {

PlannedMeasurement plannedAs(const char* id, double expected, double lower, double upper)
{
    PlannedMeasurement planned;
    planned.id = id;
    planned.object = "59 U>";
    planned.quantity = id;
    planned.unit = "V";
    planned.decimals = 1;
    planned.expected = expected;
    planned.lower = lower;
    planned.upper = upper;
    return planned;
}

/// With a band that is wider above.
MeasurementPlan somePlan()
{
    return {plannedAs("one", 100.0, 99.0, 102.0), plannedAs("two", 50.0, 49.0, 51.0),
            plannedAs("three", 10.0, 10.0, 10.0)};
}

TestRecord recordOf(std::vector<Reading> readings, RunEnd end)
{
    TestRecord record;
    record.settings = "<settings/>";
    record.readings = std::move(readings);
    record.end = end;
    record.startedAt = "2026-11-20 14:05:09";
    return record;
}

} // namespace

TEST(TestEvaluationTest, JudgesWholeTestsByTheirValuesAndOthersByTheirEnd)
{
    const auto plan = somePlan();
    const std::vector<Reading> good{
        {MeasureState::Measured, 102.0}, {MeasureState::Measured, 49.0}, {MeasureState::Measured, 10.0}};
    const auto judge = [&plan](const std::vector<Reading>& readings, RunEnd end) {
        return TestEvaluation::judge(plan, recordOf(readings, end));
    };
    EXPECT_EQ(judge(good, RunEnd::Complete), Verdict::Passed) << "the ends belong to the band";
    for (std::size_t i = 0; i < good.size(); ++i) {
        auto readings = good;
        readings[i].value += i == 1 ? -0.01 : 0.01;
        EXPECT_EQ(judge(readings, RunEnd::Complete), Verdict::Failed) << i;
        for (const auto state :
             {MeasureState::NoOperation, MeasureState::ContactEarly, MeasureState::NotReset}) {
            readings[i] = {state, good[i].value};
            EXPECT_EQ(judge(readings, RunEnd::Complete), Verdict::Failed) << i;
        }
    }
    EXPECT_EQ(judge(good, RunEnd::Stopped), Verdict::Stopped);
    EXPECT_EQ(judge(good, RunEnd::Fault), Verdict::Fault);
    EXPECT_EQ(judge(good, RunEnd::Ended), Verdict::Failed);
    EXPECT_EQ(judge({}, RunEnd::Running), Verdict::None);
    EXPECT_EQ(TestEvaluation::judge({}, recordOf({}, RunEnd::Complete)), Verdict::Failed)
        << "nothing measured is nothing passed";
}

TEST(TestEvaluationTest, ShowsWhatIsPlannedAndWhatIsMeasured)
{
    const auto plan = somePlan();
    const auto record =
        recordOf({{MeasureState::Measured, 101.0}, {MeasureState::NotReset, 0.0}}, RunEnd::Stopped);
    const auto table = TestEvaluation::createTable(plan, &record);
    ASSERT_EQ(table.rows.size(), 3u);
    EXPECT_EQ(table.rows[0].cells, (std::vector<std::string>{"1", "59 U>", "one", "100.0", "99.0 … 102.0",
                                                             "101.0", "+1.0", "V", "Passed"}));
    EXPECT_EQ(table.rows[0].mark, Mark::Passed);
    EXPECT_EQ(table.rows[1].cells[5], "");
    EXPECT_EQ(table.rows[1].cells[8], "Not reset");
    EXPECT_EQ(table.rows[1].mark, Mark::Failed);
    EXPECT_EQ(table.rows[2].mark, Mark::None);
    EXPECT_EQ(TestEvaluation::createOutcome(plan, &record).text,
              "Test stopped before its end: 2 of 3 values measured, 1 within tolerance");
    EXPECT_EQ(TestEvaluation::summarize(&record), "2 results of 2026-11-20 14:05");
}

TEST(TestEvaluationTest, TheChartMeasuresEachSideByItsOwnTolerance)
{
    const auto plan = somePlan();
    const auto yOf = [&plan](std::size_t index, double value) {
        std::vector<Reading> readings(index + 1, {MeasureState::Measured, 0.0});
        readings[index].value = value;
        const auto record = recordOf(readings, RunEnd::Stopped);
        const auto chart = TestEvaluation::createChart(plan, &record);
        EXPECT_EQ(chart.points[index].position.x, static_cast<double>(index + 1));
        return chart.points[index].position.y;
    };
    EXPECT_DOUBLE_EQ(yOf(0, 101.0), 50.0);
    EXPECT_DOUBLE_EQ(yOf(0, 99.0), -100.0);
    EXPECT_DOUBLE_EQ(yOf(0, 1000.0), 200.0) << "what lies beyond stands at the end";
    EXPECT_DOUBLE_EQ(yOf(0, 0.0), -200.0);
    EXPECT_DOUBLE_EQ(yOf(2, 10.0), 0.0) << "a band without width";
    EXPECT_DOUBLE_EQ(yOf(2, 10.1), 200.0);
    const auto idle = recordOf({{MeasureState::NoOperation, 0.0}}, RunEnd::Stopped);
    const auto unmeasured = TestEvaluation::createChart(plan, &idle).points[0];
    EXPECT_EQ(unmeasured.state, ChartPoint::State::NotOperated);
    EXPECT_DOUBLE_EQ(unmeasured.position.y, 200.0);
    const auto empty = TestEvaluation::createChart(plan, nullptr);
    for (const auto& point : empty.points)
        EXPECT_EQ(point.state, ChartPoint::State::Planned);
}

TEST(TestEvaluationTest, CountsInRussianAsOneDoes)
{
    const KesTest::LanguageScope russian(lng::Russian);
    const auto summary = [](std::size_t count) {
        const auto record = recordOf(std::vector<Reading>(count), RunEnd::Complete);
        return TestEvaluation::summarize(&record);
    };
    EXPECT_THAT(summary(1), HasSubstr("1 результат от"));
    EXPECT_THAT(summary(3), HasSubstr("3 результата от"));
    EXPECT_THAT(summary(11), HasSubstr("11 результатов от"));
    EXPECT_THAT(summary(12), HasSubstr("12 результатов от"));
    EXPECT_THAT(summary(21), HasSubstr("21 результат от"));
    EXPECT_THAT(TestEvaluation::createTable(somePlan(), nullptr).rows[0].cells[3], HasSubstr("100,0"));
}
