#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/OperateCurve.h>
#include <Overcurrent/data/TestOutcome.h>
#include <Overcurrent/data/TimeBand.h>

#include <gtest/gtest.h>

#include <limits>

using namespace Overcurrent;
using namespace KesTree::RelayNodes;

namespace {

Stage stageOf(CurveKind curve, double multiplier)
{
    Stage stage{true};
    stage.curve = curve;
    stage.timeMultiplier = multiplier;
    return stage;
}

TestResults completeResults()
{
    TestResults results;
    results.plan.multiples = {2.0};
    results.points = {{{Fault::A, 2.0}, MeasureState::Measured, std::chrono::milliseconds(10100)}};
    results.pickUp = RampResult{MeasureState::Measured, 1.01, 1.0};
    results.dropOff = RampResult{MeasureState::Measured, 0.95, 0.96};
    results.settings.currentTolerancePercent = 0.0;
    results.end = RunEnd::Complete;
    return results;
}

} // namespace

/// Operate times at 2, 5, 10 and 20 times the setting with a multiplier of 1, as tables of the standards'
/// curves give them.
TEST(OperateCurveTest, GivesTheTabulatedTimes)
{
    constexpr double multiples[] = {2.0, 5.0, 10.0, 20.0};
    struct {
        CurveKind curve;
        double seconds[4];
    } const cases[] = {
        {StandardInverse, {10.03, 4.28, 2.971, 2.267}},
        {VeryInverse, {13.50, 3.375, 1.50, 0.7105}},
        {ExtremelyInverse, {26.67, 3.333, 0.808, 0.2005}},
        {LongTimeInverse, {120.0, 30.0, 13.33, 6.316}},
        {IeeeModeratelyInverse, {3.803, 1.688, 1.207, 0.9481}},
        {IeeeVeryInverse, {7.028, 1.308, 0.689, 0.5401}},
        {IeeeExtremelyInverse, {9.522, 1.297, 0.4065, 0.1924}},
    };
    for (const auto& test : cases)
        for (std::size_t i = 0; i < std::size(multiples); ++i) {
            const auto seconds = OperateCurve::operateTime(stageOf(test.curve, 1.0), multiples[i]);
            ASSERT_TRUE(seconds);
            EXPECT_NEAR(*seconds, test.seconds[i], 6e-4 * test.seconds[i] + 5e-4)
                << test.curve << " at " << multiples[i];
            EXPECT_DOUBLE_EQ(*OperateCurve::operateTime(stageOf(test.curve, 0.3), multiples[i]),
                             *seconds * 0.3);
        }
    // From twenty times the setting on, the time stays as it is there.
    EXPECT_NEAR(*OperateCurve::operateTime(stageOf(VeryInverse, 1.0), 30.0), 0.710526, 1e-6);
}

TEST(OperateCurveTest, DefiniteTimeDependsOnNothingAndNoneOperatesUpToTheSetting)
{
    auto stage = stageOf(DefiniteTimeCurve, 7.0);
    stage.definiteTime = 0.4;
    EXPECT_EQ(OperateCurve::operateTime(stage, 1.01), 0.4);
    EXPECT_EQ(OperateCurve::operateTime(stage, 50.0), 0.4);
    for (const auto curve : {StandardInverse, DefiniteTimeCurve, IeeeVeryInverse})
        for (const double multiple : {1.0, -2.0, std::numeric_limits<double>::quiet_NaN()})
            EXPECT_FALSE(OperateCurve::operateTime(stageOf(curve, 1.0), multiple)) << multiple;
}

TEST(EvaluationTest, PassesOnlyWhatIsWholeAndWithinTolerance)
{
    using KesMeasure::Verdict;
    EXPECT_EQ(Evaluation::verdict(completeResults()), Verdict::Passed);
    using std::chrono::microseconds;
    const std::pair<Verdict, void (*)(TestResults&)> cases[] = {
        // 5 % of 10.029 s, and a little more.
        {Verdict::Passed, [](auto& r) { r.points[0].time = microseconds(10530477); }},
        {Verdict::Failed, [](auto& r) { r.points[0].time = microseconds(10530480); }},
        {Verdict::Failed, [](auto& r) { r.points[0].state = MeasureState::NoOperation; }},
        {Verdict::Passed, [](auto& r) { r.pickUp->multiple = 1.06, r.pickUp->without = 1.05; }},
        {Verdict::Failed, [](auto& r) { r.pickUp->multiple = 1.07, r.pickUp->without = 1.06; }},
        {Verdict::Failed, [](auto& r) { r.dropOff->multiple = 0.88, r.dropOff->without = 0.89; }},
        {Verdict::Failed, [](auto& r) { r.dropOff->multiple = 1.05, r.dropOff->without = 1.06; }},
        {Verdict::Passed, [](auto& r) { r.settings.rampContact = RampContactKind::NoRamps; }},
        {Verdict::Failed, [](auto& r) { r.dropOff.reset(); }},
        {Verdict::Stopped, [](auto& r) { r.end = RunEnd::Stopped; }},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        auto results = completeResults();
        cases[i].second(results);
        EXPECT_EQ(Evaluation::verdict(results), cases[i].first) << "case " << i;
    }
}

TEST(TimeBandTest, ReachesAsFarAsARelayThatIsOffInTheCurrent)
{
    RelaySettings settings;
    settings.currentTolerancePercent = 2.0;
    const auto band = TimeBand::at(settings, {}, 1.1);
    ASSERT_TRUE(band && band->latest);
    // Calculated by hand: 60.74 s at 1.122 × Is less 5 %, 93.13 s at 1.078 × Is and 5 %.
    EXPECT_NEAR(band->earliest, 57.703, 0.001);
    EXPECT_NEAR(band->expected, 73.374, 0.001);
    EXPECT_NEAR(*band->latest, 97.786, 0.001);
    EXPECT_FALSE(TimeBand::at(settings, {}, 1.02)->latest) << "may be below its setting";
    EXPECT_FALSE(TimeBand::at(settings, {}, 1.0));
}

TEST(TimeBandTest, TheAssignedErrorGrowsTowardsTheSetting)
{
    RelaySettings settings;
    settings[StageId::First].curve = DefiniteTimeCurve;
    settings[StageId::First].definiteTime = 10.0;
    settings.tolerancePercent = 4.0;
    settings.toleranceKind = AssignedError;
    const std::pair<double, double> cases[] = {{1.5, 1.0},  {2.0, 1.0},  {5.0, 1.0},
                                               {5.09, 1.0}, {5.11, 0.6}, {10.0, 0.6},
                                               {10.2, 0.6}, {10.3, 0.4}, {30.0, 0.4}};
    for (const auto& [multiple, tolerance] : cases) {
        EXPECT_NEAR(*TimeBand::at(settings, {}, multiple)->latest, 10.0 + tolerance, 1e-9) << multiple;
        EXPECT_NEAR(TimeBand::at(settings, {}, multiple)->earliest, 10.0 - tolerance, 1e-9) << multiple;
    }
}

/// A ratio read from steps alone would be low by two of them.
TEST(EvaluationTest, TheRatioIsNeitherHighNorLow)
{
    auto results = completeResults();
    results.pickUp = {MeasureState::Measured, 1.02, 1.00};
    results.dropOff = {MeasureState::Measured, 0.95, 0.97};
    EXPECT_NEAR(*Evaluation::ratio(results), 0.96 / 1.01, 1e-12);
    EXPECT_NEAR(Evaluation::ratioInterval(results)->first, 0.95 / 1.02, 1e-12);
    EXPECT_NEAR(Evaluation::ratioInterval(results)->second, 0.97, 1e-12);
}

TEST(OutcomeTest, NamesWhatHasFailedAndCountsWhatIsMeasured)
{
    auto results = completeResults();
    EXPECT_EQ(TestOutcome::create(&results).text, "Test passed: 1 of 1 points within tolerance");
    results.pickUp = {MeasureState::Measured, 1.07, 1.06};
    EXPECT_EQ(TestOutcome::create(&results).text,
              "Test failed: 1 of 1 points within tolerance, pick-up or drop-off outside");
    results.points[0].state = MeasureState::NoOperation;
    EXPECT_EQ(TestOutcome::create(&results).text, "Test failed: 0 of 1 points within tolerance");
    results.plan.multiples.push_back(5.0);
    results.end = RunEnd::Ended;
    EXPECT_EQ(TestOutcome::create(&results).text,
              "Test failed: ended after 1 of 2 points, since the relay did not respond; 0 within tolerance");
    results.end = RunEnd::Running;
    EXPECT_EQ(TestOutcome::create(&results).text,
              "Test under way: 1 of 2 points measured, 0 within tolerance");
}
