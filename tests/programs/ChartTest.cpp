#include <Overcurrent/data/TestChart.h>
#include <Overcurrent/data/TestSequences.h>

#include <gtest/gtest.h>

using namespace Overcurrent;

TEST(ChartTest, TheCurveLiesWithinItsBandAndTheAxes)
{
    for (const auto curve :
         {CurveKind::StandardInverse, CurveKind::ExtremelyInverse, CurveKind::DefiniteTimeCurve}) {
        RelaySettings settings;
        settings[StageId::First].curve = curve;
        const auto chart = TestChart::create(settings, TestPlan(), nullptr);
        ASSERT_EQ(chart.expected.size(), chart.upper.size());
        ASSERT_EQ(chart.expected.size(), chart.lower.size());
        for (std::size_t i = 0; i < chart.expected.size(); ++i) {
            EXPECT_GT(chart.upper[i].y, chart.expected[i].y);
            EXPECT_LT(chart.lower[i].y, chart.expected[i].y);
            EXPECT_GT(chart.lower[i].y, 0.0);
        }
        EXPECT_GE(chart.expected.back().y, chart.y.getMinimum());
        EXPECT_LE(chart.expected.back().x, chart.x.getMaximum());
    }
}

TEST(ChartTest, APointWithoutOperationStandsWhereItsMeasurementEnded)
{
    TestResults results;
    results.points = {{{Fault::A, 2.0}, MeasureState::NoOperation, {}}};
    const auto chart = TestChart::create(results.settings, results.plan, &results);
    const double limit = TestSequences::pointLimit(results.settings, results.plan, results.points[0]);
    EXPECT_EQ(chart.points.size(), results.plan.countPoints()) << "each once";
    EXPECT_DOUBLE_EQ(chart.points[0].position.y, limit);
    EXPECT_EQ(chart.points[0].state, KesMeasure::ChartPoint::State::NotOperated);
    EXPECT_GE(chart.y.getMaximum(), limit);
}
