#include <Overcurrent/chart/ChartData.h>

#include <gmock/gmock.h>

#include <limits>

using namespace Overcurrent;
using testing::ElementsAre;

namespace {

/// Of an axis with room for that many labels.
std::vector<std::string> labelsOf(const LogAxis& axis, double room = 100.0)
{
    std::vector<std::string> labels;
    for (const auto& tick : axis.getTicks(room, [](const std::string&) { return 1.0; }))
        if (!tick.label.empty())
            labels.push_back(tick.label);
    return labels;
}

} // namespace

TEST(LogAxisTest, EndsAtRoundNumbersAroundTheValues)
{
    const LogAxis axis(0.23, 17.2);
    EXPECT_THAT(labelsOf(axis), ElementsAre("0.2", "0.5", "1", "2", "5", "10", "20"));
    // 0.2 to 0.9 and 1 to 9, then 10 and 20.
    EXPECT_EQ(axis.getTicks(1.0, [](const std::string&) { return 1.0; }).size(), 8u + 9u + 2u);
}

TEST(LogAxisTest, ThinsOutLabelsButNotThePowersOfTen)
{
    const LogAxis axis(0.01, 100.0);
    EXPECT_THAT(labelsOf(axis, 5.0), ElementsAre("0.01", "0.1", "1", "10", "100"));
    EXPECT_THAT(labelsOf(axis, 2.0), ElementsAre("0.01", "1", "100"));
}

TEST(LogAxisTest, HasMoreLabelsOnLessThanADecade)
{
    EXPECT_THAT(labelsOf(LogAxis(1.0, 2.0), 4.0), ElementsAre("1", "1.2", "1.5", "2"));
    EXPECT_THAT(labelsOf(LogAxis(1.0, 5.0), 8.0), ElementsAre("1", "1.5", "2", "3", "4", "5"));
}

TEST(LogAxisTest, MakesAnAxisOfAnything)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [least, most] :
         {std::pair(0.0, 1.0), {-1.0, 1.0}, {nan, nan}, {1.0, infinity}, {5.0, 2.0}}) {
        EXPECT_DOUBLE_EQ(LogAxis(least, most).getMinimum(), 1.0);
        EXPECT_DOUBLE_EQ(LogAxis(least, most).getMaximum(), 10.0);
    }
}

TEST(ChartTest, TheCurveLiesWithinItsBandAndTheAxes)
{
    for (const auto curve :
         {CurveKind::StandardInverse, CurveKind::ExtremelyInverse, CurveKind::DefiniteTimeCurve}) {
        RelaySettings settings;
        settings.curve = curve;
        const auto chart = ChartData::create(settings, TestPlan(), nullptr);
        ASSERT_EQ(chart.expected.size(), chart.upper.size());
        ASSERT_EQ(chart.expected.size(), chart.lower.size());
        for (std::size_t i = 0; i < chart.expected.size(); ++i) {
            EXPECT_GT(chart.upper[i].seconds, chart.expected[i].seconds);
            EXPECT_LT(chart.lower[i].seconds, chart.expected[i].seconds);
            EXPECT_GT(chart.lower[i].seconds, 0.0);
        }
        EXPECT_GE(chart.expected.back().seconds, chart.seconds.getMinimum());
        EXPECT_LE(chart.expected.back().multiple, chart.multiples.getMaximum());
    }
}

TEST(ChartTest, APointWithoutOperationStandsAtTheTimeout)
{
    TestResults results;
    results.points = {{2.0, MeasureState::NoOperation, {}}};
    const auto chart = ChartData::create(results.settings, results.plan, &results);
    EXPECT_DOUBLE_EQ(chart.points[0].position.seconds, results.plan.timeout);
    EXPECT_FALSE(chart.points[0].isMeasured);
    EXPECT_GE(chart.seconds.getMaximum(), results.plan.timeout);
}
