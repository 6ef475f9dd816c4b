#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/OperateCurve.h>
#include <Overcurrent/data/TestOutcome.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Overcurrent;
using namespace KesTree::RelayNodes;

namespace {

RelaySettings settingsOf(CurveKind curve, double multiplier)
{
    RelaySettings settings;
    settings.curve = curve;
    settings.timeMultiplier = multiplier;
    return settings;
}

} // namespace

TEST(OperateCurveTest, FollowsTheFormulaOfTheStandard)
{
    struct {
        CurveKind curve;
        double multiplier;
        double multiple;
        double seconds;
    } const cases[] = {
        {StandardInverse, 1.0, 2.0, 10.029027},
        {StandardInverse, 0.1, 10.0, 0.297060},
        {VeryInverse, 1.0, 2.0, 13.5},
        {VeryInverse, 0.5, 10.0, 0.75},
        {ExtremelyInverse, 1.0, 10.0, 0.808081},
        {LongTimeInverse, 0.2, 5.0, 6.0},
        // From twenty times the setting on, the time stays as it is there.
        {VeryInverse, 1.0, 30.0, 0.710526},
    };
    for (const auto& test : cases) {
        const auto seconds =
            OperateCurve::operateTime(settingsOf(test.curve, test.multiplier), test.multiple);
        ASSERT_TRUE(seconds);
        EXPECT_NEAR(*seconds, test.seconds, 2e-6) << test.curve << " at " << test.multiple;
    }
}

TEST(OperateCurveTest, DefiniteTimeDependsOnNothingAboveTheSetting)
{
    auto settings = settingsOf(DefiniteTimeCurve, 7.0);
    settings.definiteTime = 0.4;
    EXPECT_EQ(OperateCurve::operateTime(settings, 1.01), 0.4);
    EXPECT_EQ(OperateCurve::operateTime(settings, 50.0), 0.4);
    EXPECT_FALSE(OperateCurve::operateTime(settings, 1.0));
}

TEST(OperateCurveTest, DoesNotOperateAtOrBelowTheSetting)
{
    const auto nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto curve :
         {StandardInverse, VeryInverse, ExtremelyInverse, LongTimeInverse, DefiniteTimeCurve})
        for (const double multiple : {1.0, 0.99, 0.0, -2.0, nan})
            EXPECT_FALSE(OperateCurve::operateTime(settingsOf(curve, 1.0), multiple)) << multiple;
}

namespace {

TestResults completeResults()
{
    TestResults results;
    results.plan.multiples = {2.0};
    results.points = {{2.0, MeasureState::Measured, std::chrono::milliseconds(10100)}};
    results.pickUp = RampResult{MeasureState::Measured, 1.01};
    results.dropOff = RampResult{MeasureState::Measured, 0.95};
    results.end = RunEnd::Complete;
    return results;
}

} // namespace

TEST(EvaluationTest, PassesOnlyWhatIsWholeAndWithinTolerance)
{
    using KesMeasure::Verdict;
    EXPECT_EQ(Evaluation::verdict(completeResults()), Verdict::Passed);
    const auto verdictWith = [](auto change) {
        auto results = completeResults();
        change(results);
        return Evaluation::verdict(results);
    };
    // 5 % of 10.029 s, and a little more.
    EXPECT_EQ(verdictWith([](auto& r) { r.points[0].time = std::chrono::microseconds(10530477); }),
              Verdict::Passed);
    EXPECT_EQ(verdictWith([](auto& r) { r.points[0].time = std::chrono::microseconds(10530480); }),
              Verdict::Failed);
    EXPECT_EQ(verdictWith([](auto& r) { r.points[0].state = MeasureState::NoOperation; }), Verdict::Failed);
    EXPECT_EQ(verdictWith([](auto& r) { r.pickUp->multiple = 1.06; }), Verdict::Failed);
    EXPECT_EQ(verdictWith([](auto& r) { r.dropOff->multiple = 0.9; }), Verdict::Failed);
    EXPECT_EQ(verdictWith([](auto& r) { r.dropOff->multiple = 1.05; }), Verdict::Failed);
    EXPECT_EQ(verdictWith([](auto& r) { r.end = RunEnd::Stopped; }), Verdict::Stopped);
    EXPECT_EQ(verdictWith([](auto& r) { r.end = RunEnd::Fault; }), Verdict::Fault);
    EXPECT_EQ(verdictWith([](auto& r) { r.end = RunEnd::Running; }), Verdict::None);
}

TEST(OutcomeTest, NamesWhatHasFailedAndCountsWhatIsMeasured)
{
    auto results = completeResults();
    EXPECT_EQ(TestOutcome::create(&results).text, "Test passed: 1 of 1 points within tolerance");
    results.pickUp->multiple = 1.06;
    EXPECT_EQ(TestOutcome::create(&results).text,
              "Test failed: 1 of 1 points within tolerance, pick-up or drop-off outside");
    results.points[0].state = MeasureState::NoOperation;
    EXPECT_EQ(TestOutcome::create(&results).text, "Test failed: 0 of 1 points within tolerance");
    results.plan.multiples.push_back(5.0);
    results.end = RunEnd::Running;
    EXPECT_EQ(TestOutcome::create(&results).text,
              "Test under way: 1 of 2 points measured, 0 within tolerance");
}
