#include <Overcurrent/data/PlanTexts.h>
#include <Overcurrent/data/TestPlan.h>

#include <support/LanguageScope.h>

#include <gmock/gmock.h>

#include <limits>

using namespace Overcurrent;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pointwise;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

std::string reasonOf(const Kes::Result& result)
{
    return result ? std::string() : result.getError()->getMessage();
}

} // namespace

TEST(PlanTest, TheDefaultPlanSuitsTheDefaultRelay)
{
    EXPECT_TRUE(TestPlan().check(RelaySettings(), KesDriver::OutputLimits()));
}

TEST(PlanTest, RefusesWhatMakesNoSenseAndSaysWhy)
{
    struct {
        const char* reason;
        void (*spoil)(TestPlan&);
    } const cases[] = {
        {"no points", [](TestPlan& plan) { plan.multiples.clear(); }},
        {"101 points", [](TestPlan& plan) { plan.multiples.assign(101, 2.0); }},
        {"At 1 x Is the relay does not operate", [](TestPlan& plan) { plan.multiples[2] = 1.0; }},
        {"At -3 x Is", [](TestPlan& plan) { plan.multiples[2] = -3.0; }},
        {"At nan x Is", [](TestPlan& plan) { plan.multiples[2] = notANumber; }},
        {"inf x Is is too much", [](TestPlan& plan) { plan.multiples[2] = infinity; }},
        {"Time-out is 0,", [](TestPlan& plan) { plan.timeout = 0.0; }},
        {"Time-out is nan", [](TestPlan& plan) { plan.timeout = notANumber; }},
        {"Pause before each point is -1", [](TestPlan& plan) { plan.pause = -1.0; }},
        {"Pick-up: the ramp must rise", [](TestPlan& plan) { std::swap(plan.pickUp.from, plan.pickUp.to); }},
        {"Pick-up: the ramp must rise", [](TestPlan& plan) { plan.pickUp.from = 1.1; }},
        {"Drop-off: the ramp must fall", [](TestPlan& plan) { plan.dropOff.to = 1.1; }},
        {"Pick-up: both ends", [](TestPlan& plan) { plan.pickUp.to = infinity; }},
        {"Pick-up: a step of 0 x Is", [](TestPlan& plan) { plan.pickUp.step = 0.0; }},
        {"Drop-off: a step of -0.01 x Is", [](TestPlan& plan) { plan.dropOff.step = -0.01; }},
        {"Drop-off: the ramp has more than 2000 steps", [](TestPlan& plan) { plan.dropOff.step = 1e-300; }},
        {"Pick-up: the dwell is 0 s", [](TestPlan& plan) { plan.pickUp.dwell = 0.0; }},
        {"Pick-up tolerance is 0,", [](TestPlan& plan) { plan.pickUpTolerancePercent = 0.0; }},
        {"Least drop-off ratio is 1.5", [](TestPlan& plan) { plan.minimumRatio = 1.5; }},
    };
    for (const auto& test : cases) {
        TestPlan plan;
        test.spoil(plan);
        EXPECT_THAT(reasonOf(plan.check()), HasSubstr(test.reason));
    }
}

TEST(PlanTest, RefusesWhatDoesNotSuitRelayOrDevice)
{
    RelaySettings settings;
    TestPlan plan;
    plan.timeout = 17.5;
    // 17.194 s and 5 % of it.
    EXPECT_THAT(reasonOf(plan.check(settings)), HasSubstr("at 1.5 x Is the relay may take up to 18.05 s"));
    plan.timeout = 18.06;
    EXPECT_TRUE(plan.check(settings));
    settings.settingCurrent = 1.6;
    EXPECT_TRUE(plan.check(settings, KesDriver::OutputLimits()));
    settings.settingCurrent = 2.0;
    EXPECT_THAT(reasonOf(plan.check(settings, KesDriver::OutputLimits())),
                HasSubstr("20 x Is is 40 A, but the device puts out at most 32 A"));
}

TEST(RampTest, ReachesBothEndsWhateverTheStep)
{
    EXPECT_THAT((Ramp{0.9, 1.1, 0.1, 0.2}.getMultiples()), Pointwise(DoubleNear(1e-9), {0.9, 1.0, 1.1}));
    EXPECT_THAT((Ramp{1.2, 0.9, 0.2, 0.2}.getMultiples()), Pointwise(DoubleNear(1e-9), {1.2, 1.0, 0.9}));
    EXPECT_THAT((Ramp{0.9, 1.1, 5.0, 0.2}.getMultiples()), Pointwise(DoubleNear(1e-9), {0.9, 1.1}));
    EXPECT_EQ((Ramp{0.9, 1.2, 0.01, 0.2}.getMultiples().size()), 31u);
}

TEST(PlanTextsTest, ReadsWhatItWritesInBothLanguages)
{
    for (const auto language : {lng::English, lng::Russian}) {
        const KesTest::LanguageScope scope(language);
        TestPlan plan;
        plan.multiples = {1.05, 2.5, 12};
        plan.pickUp.step = 0.005;
        TestPlan read;
        ASSERT_TRUE(PlanTexts(plan).read(read));
        EXPECT_EQ(read, plan);
    }
    const KesTest::LanguageScope scope(lng::Russian);
    EXPECT_EQ(PlanTexts(TestPlan())[PlanField::Pause], "0,5");
}

TEST(PlanTextsTest, ReadsListsAsUsersTypeThem)
{
    const auto multiplesOf = [](const char* text) {
        PlanTexts texts{TestPlan()};
        texts[PlanField::Multiples] = text;
        TestPlan plan;
        EXPECT_TRUE(texts.read(plan)) << text;
        return plan.multiples;
    };
    EXPECT_THAT(multiplesOf("1.5 2 3"), ElementsAre(1.5, 2, 3));
    EXPECT_THAT(multiplesOf(" 1,5;2 ;  3; "), ElementsAre(1.5, 2, 3));
    EXPECT_THAT(multiplesOf("1.5, 2, 3,"), ElementsAre(1.5, 2, 3));
    EXPECT_THAT(multiplesOf(""), ElementsAre());
}

TEST(PlanTextsTest, RefusesWhatIsNoNumber)
{
    for (const auto field : {PlanField::Multiples, PlanField::Timeout, PlanField::DropOffStep}) {
        PlanTexts texts{TestPlan()};
        texts[field] = "2 x";
        TestPlan plan;
        EXPECT_THAT(reasonOf(texts.read(plan)), HasSubstr("is not a number"));
    }
}
