#include <Overcurrent/data/PlanTexts.h>
#include <Overcurrent/data/TestPlan.h>

#include <support/LanguageScope.h>
#include <support/Message.h>

#include <gmock/gmock.h>

#include <limits>

using namespace Overcurrent;
using KesTest::message;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pointwise;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Refusal {
    const char* reason;
    void (*spoil)(RelaySettings& settings, TestPlan& plan);
};

/// The subject is good as it is, and refused for the reason once it has been spoiled.
void expectRefused(const std::vector<Refusal>& cases, const RelaySettings& settings)
{
    const KesDriver::OutputLimits limits;
    for (const auto& [reason, spoil] : cases) {
        auto spoiled = settings;
        TestPlan plan;
        plan.timeout = 3600.0;
        EXPECT_EQ(message(plan.check(settings, limits)), "");
        spoil(spoiled, plan);
        EXPECT_THAT(message(plan.check(spoiled, limits)), HasSubstr(reason));
    }
}

} // namespace

TEST(PlanTest, RefusesWhatMakesNoSenseOrWouldJudgeOrBurnAHealthyRelay)
{
    const std::vector<Refusal> cases{
        {"no points", [](auto&, auto& plan) { plan.multiples.clear(); }},
        {"At 1 × Is the relay does not operate", [](auto&, auto& plan) { plan.multiples[2] = 1.0; }},
        {"A point at 1.05 × Is lies within the pick-up tolerance of 5 %",
         [](auto&, auto& plan) { plan.multiples[2] = 1.05; }},
        {"A point at 1.5 × Is", [](auto&, auto& plan) { plan.pickUpTolerancePercent = 50.0; }},
        {"At nan × Is", [](auto&, auto& plan) { plan.multiples[2] = notANumber; }},
        {"inf × Is is too much", [](auto&, auto& plan) { plan.multiples[2] = infinity; }},
        {"Time-out is 0,", [](auto&, auto& plan) { plan.timeout = 0.0; }},
        {"ratio is 1, but must lie between 0.01 and 0.99",
         [](auto&, auto& plan) { plan.minimumRatio = 1.0; }},
        {"Pick-up: the ramp must rise",
         [](auto&, auto& plan) { std::swap(plan.pickUp.from, plan.pickUp.to); }},
        {"Drop-off: the ramp must fall", [](auto&, auto& plan) { plan.dropOff.to = 1.1; }},
        {"Pick-up: a step of 0 × Is", [](auto&, auto& plan) { plan.pickUp.step = 0.0; }},
        {"Pick-up: a step of 0.051 × Is is coarser than",
         [](auto&, auto& plan) { plan.pickUp.step = 0.051; }},
        {"Drop-off: a step of 1e+300 × Is is coarser", [](auto&, auto& plan) { plan.dropOff.step = 1e300; }},
        {"Drop-off: the ramp has more than 2000 steps",
         [](auto&, auto& plan) { plan.dropOff.step = 1e-300; }},
        {"no fault to try", [](auto&, auto& plan) { plan.faults.clear(); }},
        {"a fault twice", [](auto&, auto& plan) { plan.faults.push_back(Fault::A); }},
        {"1.06 × Is is too close to Is: a relay whose current is off by 6 %",
         [](auto& settings, auto& plan) {
             settings.currentTolerancePercent = 6.0;
             plan.multiples = {1.06};
         }},
        {"At 10 × Is for up to 171.",
         [](auto& settings, auto&) {
             settings[StageId::First].timeMultiplier = 10.0;
             settings[StageId::First].curve = CurveKind::LongTimeInverse;
         }},
        // Each of them would do, but such a relay hardly cools down in between.
        {"At 19 × Is for up to",
         [](auto& settings, auto& plan) {
             settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
             settings[StageId::First].definiteTime = 5.0;
             settings.continuousWithstand = 0.5;
             plan.multiples = {20.0, 20.0, 20.0, 19.0};
         }},
        {"Pick-up ramp: the relay's current input",
         [](auto& settings, auto& plan) {
             settings[StageId::First].settingCurrent = 20.0;
             plan.pickUp.dwell = 10.0;
             plan.multiples = {1.1};
             settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
         }},
        {"with the definite-time characteristic only",
         [](auto& settings, auto&) { settings.rampContact = RampContactKind::ByTripContact; }},
        {"input 9, but the device has 8", [](auto& settings, auto&) { settings.startInput = 9; }},
        // 18.10 s at 1.47 × Is and 5 % of it.
        {"at 1.5 × Is the relay may take up to 19.00 s", [](auto&, auto& plan) { plan.timeout = 18.5; }},
        {"20 × Is is 40 A, but the device puts out at most 32 A",
         [](auto& settings, auto&) { settings[StageId::First].settingCurrent = 2.0; }},
    };
    expectRefused(cases, {});
    TestPlan plan;
    plan.pickUp.step = plan.dropOff.step = 0.07;
    plan.pickUpTolerancePercent = 7.0;
    EXPECT_EQ(message(plan.check()), "") << "a step as wide as the tolerance";
    RelaySettings relay;
    relay[StageId::First].settingCurrent = 1.6;
    relay.startInput = 8;
    plan.timeout = 19.01;
    EXPECT_EQ(message(plan.check(relay, KesDriver::OutputLimits())), "") << "the most that the device can";
}

TEST(PlanTest, RefusesWhatCannotBeWiredOrSeen)
{
    RelaySettings relay;
    relay[StageId::Residual].isUsed = true;
    const std::vector<Refusal> cases{
        {"Fault AB takes 4 current outputs, with 2 in parallel for each phase; the device has 3",
         [](auto&, auto& plan) {
             plan.faults = {Fault::AB};
             plan.outputsPerPhase = 2;
         }},
        {"cannot be both A and N",
         [](auto&, auto& plan) {
             plan.faults.push_back(Fault::N);
             plan.outputsPerPhase = 3;
         }},
        {"No stage in use sees fault N",
         [](auto& settings, auto& plan) {
             plan.faults = {Fault::N};
             settings[StageId::Residual].isUsed = false;
         }},
        {"At 1.5 × Is no stage operates with fault BC",
         [](auto& settings, auto& plan) {
             plan.faults = {Fault::BC};
             settings[StageId::First].curve = CurveKind::TableCurve;
         }},
        {"No stage in use sees fault A",
         [](auto& settings, auto& plan) {
             plan.direction = FaultDirection::Reverse;
             for (auto& stage : settings.stages)
                 stage.direction = DirectionKind::ForwardOnly;
         }},
        {"20 × Is is 80 A, but the device puts out at most 64 A",
         [](auto& settings, auto& plan) {
             plan.outputsPerPhase = 2;
             settings.nominalCurrent = settings[StageId::First].settingCurrent = 4.0;
         }},
    };
    expectRefused(cases, relay);
}

/// Some values are accepted only after others.
TEST(RelaySettingsTest, GoIntoATestObjectWhateverItHeldBefore)
{
    RelaySettings settings;
    settings.nominalCurrent = 5.0;
    settings[StageId::First].settingCurrent = 60.0;
    settings[StageId::First].curve = CurveKind::IeeeVeryInverse;
    settings.toleranceKind = TimeToleranceKind::AssignedError;
    settings.tripInput = 2;
    settings.startInput = 1;
    settings.continuousWithstand = 200.0;
    settings.tenSecondWithstand = 300.0;
    settings.oneSecondWithstand = 400.0;
    settings.resetTime = 5.0;
    const auto stage = KesTree::RelayNodes::overcurrentStage();
    for (const auto& wanted : {settings, RelaySettings(), settings}) {
        EXPECT_TRUE(wanted.putInto(*stage));
        EXPECT_EQ(RelaySettings::fromNode(*stage), wanted);
    }
    settings.startInput = settings.tripInput;
    EXPECT_FALSE(settings.putInto(*stage));
    settings.rampContact = RampContactKind::NoRamps;
    EXPECT_TRUE(settings.putInto(*stage));
}

TEST(RampTest, ReachesBothEndsWhateverTheStep)
{
    EXPECT_THAT((Ramp{0.9, 1.1, 0.1, 0.2}.getMultiples()), Pointwise(DoubleNear(1e-9), {0.9, 1.0, 1.1}));
    EXPECT_THAT((Ramp{0.9, 1.1, 5.0, 0.2}.getMultiples()), Pointwise(DoubleNear(1e-9), {0.9, 1.1}));
}

TEST(PlanTextsTest, ReadsWhatItWritesAndWhatUsersType)
{
    PlanTexts typed{TestPlan()};
    for (const char* text : {" 1,5;2 ;  3; ", "1.5, 2, 3,"}) {
        typed[PlanField::Multiples] = text;
        TestPlan plan;
        EXPECT_FALSE(typed.read(plan)) << text;
        EXPECT_THAT(plan.multiples, ElementsAre(1.5, 2, 3));
    }
    for (const auto language : {lng::English, lng::Russian}) {
        const KesTest::LanguageScope scope(language);
        TestPlan plan;
        plan.multiples = {1.06, 2.5, 12};
        plan.pickUp = {0.8, 1.3, 0.005, 0.4};
        plan.dropOff = {1.4, 0.7, 0.006, 0.3};
        TestPlan read;
        ASSERT_FALSE(PlanTexts(plan).read(read));
        EXPECT_EQ(read, plan);
    }
}

TEST(PlanTextsTest, AWrongTextKeepsNoOtherFromBeingTaken)
{
    TestPlan expected;
    expected.pause = 0.7;
    expected.minimumRatio = 0.8;
    // Each makes sense only beside the other.
    expected.pickUp.step = 0.07;
    expected.pickUpTolerancePercent = 7.0;
    PlanTexts texts(expected);
    texts[PlanField::Multiples] = "2 3 x 5";
    texts[PlanField::Timeout] = "0";
    texts[PlanField::DropOffStep] = "";
    TestPlan plan;
    auto error = texts.read(plan);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->field, PlanField::Multiples);
    EXPECT_EQ(error->text, "Points: “x” is not a number.");
    EXPECT_EQ(plan, expected);
    texts[PlanField::Multiples] = "2 3";
    texts[PlanField::Timeout] = "60";
    error = texts.read(plan);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->text, "Drop-off ramp, step: “” is not a number.");
}
