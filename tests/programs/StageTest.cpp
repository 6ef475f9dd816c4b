#include <Overcurrent/data/PlanTexts.h>
#include <Overcurrent/data/ResultTexts.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/data/StageTimes.h>
#include <Overcurrent/data/TestSequences.h>
#include <Overcurrent/data/TimeBand.h>

#include <support/LanguageScope.h>

#include <KesMeasure/ResultFile.h>

#include <gmock/gmock.h>

#include <cmath>
#include <complex>
#include <numbers>

using namespace Overcurrent;
using testing::HasSubstr;

namespace {

/// I> 1 A with 10 s, I>> 5 A with 0.3 s, I0> 0.2 A with 0.5 s, all of definite time.
RelaySettings threeStages()
{
    RelaySettings settings;
    settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
    settings[StageId::First].definiteTime = 10.0;
    settings[StageId::Second].isUsed = true;
    settings[StageId::Residual].isUsed = true;
    return settings;
}

StageId stageAt(const RelaySettings& settings, const FaultCase& faultCase, double multiple)
{
    return TimeBand::at(settings, faultCase, multiple)->stage;
}

std::complex<double> complexOf(const KesDriver::Phasor& phasor)
{
    return std::polar(phasor.magnitude, phasor.degrees * std::numbers::pi / 180.0);
}

} // namespace

TEST(StageTest, TheFastestStageThatSeesTheFaultDecides)
{
    const auto settings = threeStages();
    EXPECT_EQ(stageAt(settings, {Fault::AB}, 2.0), StageId::First);
    EXPECT_EQ(stageAt(settings, {Fault::AB}, 5.5), StageId::Second);
    EXPECT_EQ(stageAt(settings, {Fault::ABC}, 2.0), StageId::First);
    // A fault to earth is seen by all, N by the residual stage first: a third of it is in each phase.
    EXPECT_EQ(stageAt(settings, {Fault::C}, 2.0), StageId::Residual);
    EXPECT_EQ(stageAt(settings, {Fault::C}, 5.5), StageId::Second);
    EXPECT_EQ(stageAt(settings, {Fault::N}, 70.0), StageId::Residual);
    EXPECT_EQ(stageAt(settings, {Fault::N}, 76.0), StageId::Second);
    EXPECT_EQ(stageAt(settings, {Fault::N, FaultDirection::Forward, true}, 76.0), StageId::Residual);
    EXPECT_DOUBLE_EQ(StageTimes::referenceCurrent(settings, {Fault::N}), 0.2);
    EXPECT_DOUBLE_EQ(StageTimes::referenceCurrent(settings, {Fault::C}), 1.0);
    EXPECT_DOUBLE_EQ(StageTimes::pickUpCurrent(settings, {Fault::C}), 0.2);
    EXPECT_DOUBLE_EQ(StageTimes::pickUpCurrent(settings, {Fault::BC}), 1.0);
}

/// Near the setting of a faster stage nobody knows whether it operates.
TEST(StageTest, BothOutcomesAreRightWithinTheToleranceOfAFasterStage)
{
    const auto settings = threeStages();
    for (const double multiple : {4.95, 5.05}) {
        const auto band = TimeBand::at(settings, {Fault::AB}, multiple);
        EXPECT_NEAR(band->earliest, 0.3 - 0.03, 1e-9) << multiple;
        EXPECT_NEAR(*band->latest, 10.5, 1e-9) << multiple;
    }
    EXPECT_NEAR(TimeBand::at(settings, {Fault::AB}, 4.85)->earliest, 9.5, 1e-9);
    EXPECT_NEAR(*TimeBand::at(settings, {Fault::AB}, 5.15)->latest, 0.33, 1e-9);
}

/// Seen from the loop that carries the fault's current.
TEST(FaultTest, TheCurrentHasTheCharacteristicAngleAgainstItsVoltage)
{
    auto settings = threeStages();
    settings[StageId::First].direction = DirectionKind::ForwardOnly;
    settings.characteristicAngle = -60.0;
    constexpr std::pair<Fault, std::pair<int, int>> loops[] = {
        {Fault::A, {0, -1}}, {Fault::B, {1, -1}}, {Fault::C, {2, -1}}, {Fault::ABC, {1, -1}},
        {Fault::AB, {0, 1}}, {Fault::BC, {1, 2}}, {Fault::CA, {2, 0}}, {Fault::N, {0, -1}}};
    for (const bool isForward : {true, false})
        for (const auto& [fault, loop] : loops) {
            TestPlan plan;
            plan.direction = isForward ? FaultDirection::Forward : FaultDirection::Reverse;
            EXPECT_EQ(SettingsSummary::describe(plan, settings)[1].value,
                      isForward ? "A, forward" : "A, reverse");
            const auto outputs = TestSequences::outputs(settings, plan, fault, 1.0);
            const auto volts = [&](int phase) {
                return phase < 0 ? 0.0 : complexOf(outputs.voltages[static_cast<std::size_t>(phase)]);
            };
            const auto ratio = complexOf(outputs.currents[static_cast<std::size_t>(loop.first)]) /
                               (volts(loop.first) - volts(loop.second));
            EXPECT_NEAR(std::arg(ratio) * 180.0 / std::numbers::pi, isForward ? -60.0 : 120.0, 1e-6)
                << Faults::wordOf(fault);
            // Half of 100 V between the phases where there is a fault to earth.
            const double share = loop.second < 0 && fault != Fault::ABC ? 0.5 : 1.0;
            EXPECT_NEAR(std::abs(volts(loop.first)), share * 57.735, 1e-3) << Faults::wordOf(fault);
        }
    const auto undirected = TestSequences::outputs(RelaySettings(), TestPlan(), Fault::A, 1.0);
    EXPECT_EQ(undirected.voltages, KesDriver::OutputState().voltages);
}

TEST(PlanTextsTest, ChoicesThatMakeNoPlanKeepNoTextFromBeingTaken)
{
    PlanTexts texts{TestPlan()};
    texts.choices.faults = {Fault::AB, Fault::N};
    texts.choices.direction = FaultDirection::Reverse;
    TestPlan plan;
    ASSERT_FALSE(texts.read(plan));
    EXPECT_EQ(plan.faults, texts.choices.faults);
    EXPECT_EQ(plan.direction, FaultDirection::Reverse);
    texts.choices.outputsPerPhase = 2;
    texts[PlanField::Timeout] = "70";
    const auto error = texts.read(plan);
    ASSERT_TRUE(error);
    EXPECT_THAT(error->text, HasSubstr("Fault AB takes 4"));
    EXPECT_EQ(plan.timeout, 70.0);
    EXPECT_EQ(plan.outputsPerPhase, 1u);
}

TEST(ResultTextsTest, NameFaultAndStageOfEachPoint)
{
    TestResults results;
    results.settings = threeStages();
    results.plan.faults = {Fault::BC, Fault::N};
    results.plan.multiples = {6.0};
    results.points = {{{Fault::BC, 6.0}, MeasureState::Measured, std::chrono::milliseconds(310)},
                      {{Fault::N, 6.0}, MeasureState::NoOperation, {}}};
    results.pickUp = RampResult{MeasureState::Measured, 1.01, 1.0};
    const auto table = ResultTexts::createTable(results);
    std::string all;
    for (const auto& row : table.rows)
        for (const auto& cell : row.cells)
            all += cell + "|";
    EXPECT_THAT(all, HasSubstr("1|BC|6.00|6.000|I>>|0.300|0.310|"));
    EXPECT_THAT(all, HasSubstr("2|N|6.00|1.200|I0>|0.500|—|"));
    EXPECT_EQ(table.values[0].name, "Pick-up (BC, I>)");
    EXPECT_THAT(ResultTexts::describe(results, results.points[1]), HasSubstr("N, 6.00 × Is, I0>"));

    const KesTest::LanguageScope russian(lng::Russian);
    results.dropOff = RampResult{MeasureState::Measured, 0.97, 0.98};
    KesMeasure::TestSummary summary;
    summary.table = ResultTexts::createTable(results);
    const auto file = KesMeasure::ResultFile::toText(KesMeasure::ResultFile::Kind::Csv, summary);
    EXPECT_THAT(file, HasSubstr("\npoint.BC.6,1,BC,")) << "the letters of a fault are those of the id";
    EXPECT_THAT(file, testing::ContainsRegex("\nratio,.*,0.97,,passed")) << "as many digits as on the screen";
}
