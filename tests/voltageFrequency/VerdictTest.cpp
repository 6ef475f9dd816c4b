#include <VoltageFrequency/data/Settings.h>
#include <VoltageFrequency/model/VoltageFrequencyModel.h>
#include <VoltageFrequency/model/VoltageFrequencyTest.h>

#include <KesMeasure/TestEvaluation.h>
#include <KesTreeRelay/VoltageFrequencyNodes.h>

#include <support/ProgramRunTest.h>

#include <voltageFrequency/StageRelay.h>

#include <random>

using namespace VoltageFrequency;
using namespace std::chrono_literals;
using KesMeasure::MeasureState;
using KesMeasure::Reading;
using KesTest::StageRelay;
using Quantity = StageRelay::Values::Quantity;
namespace Nodes = KesTree::VoltageFrequencyNodes;

namespace {

StageRelay::Values wired;
std::shared_ptr<StageRelay> relayOfRun;

/// The program's own test, at a relay of the tests.
class WiredTest : public VoltageFrequencyTest {
public:
    using VoltageFrequencyTest::VoltageFrequencyTest;

    std::shared_ptr<KesDriver::ISimulatedTestObject> makeTestObject() const override
    {
        return relayOfRun = std::make_shared<StageRelay>(wired);
    }
};

class WiredModel : public KesTestProgram::TestModel {
public:
    WiredModel() : TestModel(makeKind()) {}

    static KesTestProgram::TestKind makeKind()
    {
        auto kind = VoltageFrequencyModel::kind();
        kind.makeTest = [](const KesTree::Node& tree) {
            return std::make_shared<WiredTest>(Settings::fromNode(tree));
        };
        return kind;
    }
};

/// A stage with the settings of a new archive, as its maker promises it.
struct Promise {
    const char* group;
    Quantity quantity;
    bool isUnder;
    double pickUp;
    double dropOff;
    double tolerance;
    double delay;
    double timeTolerance;
};

constexpr Promise promises[] = {
    {Nodes::Undervoltage, Quantity::Volts, true, 80.0, 84.0, 0.8, 1.0, 0.05},
    {Nodes::Overvoltage, Quantity::Volts, false, 115.0, 109.25, 1.15, 0.5, 0.05},
    {Nodes::Underfrequency, Quantity::Hertz, true, 49.0, 49.05, 0.01, 0.5, 0.1},
    {Nodes::Overfrequency, Quantity::Hertz, false, 51.0, 50.95, 0.01, 0.5, 0.1},
    {Nodes::FrequencyRate, Quantity::HertzPerSecond, true, -1.0, -0.9, 0.05, 0.3, 0.1},
};

KesDriver::DeviceTime toTime(double seconds)
{
    return KesDriver::DeviceTime(std::llround(seconds * 1e6));
}

/// Off by these shares of its tolerances.
StageRelay::Values makeRelay(const Promise& promise, double valueShare, double timeShare)
{
    StageRelay::Values values;
    values.quantity = promise.quantity;
    values.isUnder = promise.isUnder;
    values.pickUp = promise.pickUp + valueShare * promise.tolerance;
    values.dropOff = promise.dropOff + valueShare * promise.tolerance;
    values.startTime = 40ms;
    values.tripTime = toTime(promise.delay + timeShare * promise.timeTolerance);
    values.resetTime = 30ms;
    return values;
}

class VerdictTest : public KesTest::ProgramRunTest<WiredModel> {
protected:
    VerdictTest() : ProgramRunTest(1e5) {}

    void use(const Promise& promise)
    {
        for (const auto& other : promises)
            EXPECT_TRUE(model.getTestObject()
                            ->find(std::string(other.group) + "/" + Nodes::StageUsed)
                            ->setValue(&other == &promise));
    }
    /// The readings of the stage in use, each passed or not.
    std::vector<bool> test(const StageRelay::Values& relay)
    {
        wired = relay;
        EXPECT_TRUE(runToEnd());
        const auto shown = model.getTestInView();
        const auto plan = shown.test->createPlan();
        readings = shown.record ? shown.record->readings : std::vector<Reading>();
        std::vector<bool> passed;
        for (std::size_t i = 0; i < readings.size(); ++i)
            passed.push_back(plan[i].isPassed(readings[i]));
        return passed;
    }
    static std::vector<bool> all(bool passed) { return std::vector<bool>(3, passed); }

    std::vector<Reading> readings;
};

} // namespace

TEST_F(VerdictTest, HealthyRelaysPassAndFaultyOnesDoNot)
{
    std::mt19937 random(7);
    const auto draw = [&random](double least, double most) {
        return least +
               (most - least) * static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
    };
    for (const auto& promise : promises) {
        use(promise);
        for (int i = 0; i < 12; ++i) {
            const double sign = i % 2 == 0 ? 1.0 : -1.0;
            // A rate is found in steps of a fifth of the tolerance.
            const double worst = promise.quantity == Quantity::HertzPerSecond ? 1.25 : 1.2;
            auto healthy = makeRelay(promise, sign * draw(0.85, 0.98), sign * draw(0.85, 0.98));
            healthy.startTime = toTime(draw(0.005, 0.08));
            healthy.resetTime = toTime(draw(0.005, 0.03));
            healthy.bounces = promise.quantity == Quantity::HertzPerSecond ? 0 : i % 3;
            healthy.shakeBefore = i % 4 == 1 ? 150ms : 0ms;
            EXPECT_EQ(test(healthy), all(true)) << promise.group << " " << i;
            auto faulty = makeRelay(promise, sign * draw(worst, 2.0), sign * draw(1.05, 2.0));
            EXPECT_EQ(test(faulty), all(false)) << promise.group << " " << i;
        }
    }
}

TEST_F(VerdictTest, TellsWhatIsWrongWithAContact)
{
    const auto& promise = promises[0];
    use(promise);
    auto relay = makeRelay(promise, 0.0, 0.0);
    relay.pickUp = relay.dropOff = 0.0;
    EXPECT_EQ(test(relay), all(false));
    EXPECT_EQ(readings, std::vector<Reading>(3, {MeasureState::NoOperation, 0.0})) << "it never starts";
    relay.pickUp = 110.0;
    relay.dropOff = 120.0;
    for (const auto tripTime : {relay.tripTime, StageRelay::Time(1h)}) {
        relay.tripTime = tripTime;
        EXPECT_EQ(test(relay), all(false));
        EXPECT_EQ(readings, std::vector<Reading>(3, {MeasureState::NotReset, 0.0})) << "it does not rest";
        EXPECT_GT(relayOfRun->getLeast(), 99.0) << "and sees nothing but nominal voltages";
    }
    relay = makeRelay(promise, 0.0, 0.0);
    relay.resetTime = 1500ms;
    (void)test(relay);
    ASSERT_EQ(readings.size(), 3u);
    EXPECT_EQ(readings[2].state, MeasureState::Measured) << "the plan waits two seconds for it";
    relay = makeRelay(promise, 0.0, 0.0);
    relay.pickUp = 90.0;
    relay.dropOff = 95.0;
    EXPECT_EQ(test(relay), (std::vector<bool>{false, false, true}));
    EXPECT_EQ(readings[0].state, MeasureState::ContactEarly) << "it has started before the ramp";
    relay = makeRelay(promise, 0.0, 0.0);
    relay.dropOff = 99.0;
    EXPECT_EQ(test(relay), (std::vector<bool>{true, false, true}));
    EXPECT_EQ(readings[1].state, MeasureState::NoDropOff) << "it resets with nominal voltage only";
    use(promises[1]);
    relay = makeRelay(promises[1], 0.0, 0.0);
    relay.misses = 1;
    ASSERT_TRUE(model.getTestObject()->find("plan/repetitions")->setValue(2LL));
    EXPECT_EQ(test(relay), (std::vector<bool>{false, true, true})) << "a second attempt mends nothing";
}

/// Calculated by hand: the ramp goes one tolerance in a second, a relay may take 0.15 s.
TEST(VoltageFrequencyPlanTest, PermitsToleranceAndResponse)
{
    const auto tree = makeTestObject();
    const auto plan = VoltageFrequencyTest(Settings::fromNode(*tree)).createPlan();
    const struct {
        const char* id;
        double lower;
        double upper;
    } expected[] = {
        {"undervoltage.pickUp", 79.08, 80.8},      {"undervoltage.dropOff", 83.2, 84.92},
        {"undervoltage.operateTime", 0.95, 1.05},  {"overvoltage.pickUp", 113.85, 116.3225},
        {"overvoltage.dropOff", 107.9275, 110.4},  {"overvoltage.operateTime", 0.45, 0.55},
        {"underfrequency.pickUp", 48.9885, 49.01}, {"underfrequency.dropOff", 49.04, 49.0615},
        {"underfrequency.operateTime", 0.4, 0.6},  {"overfrequency.pickUp", 50.99, 51.0115},
        {"overfrequency.dropOff", 50.9385, 50.96}, {"overfrequency.operateTime", 0.4, 0.6},
        {"frequencyRate.pickUp", -1.06, -0.95},    {"frequencyRate.dropOff", -0.95, -0.84},
        {"frequencyRate.operateTime", 0.2, 0.4},
    };
    ASSERT_EQ(plan.size(), std::size(expected));
    for (std::size_t i = 0; i < plan.size(); ++i) {
        EXPECT_EQ(plan[i].id, expected[i].id);
        EXPECT_NEAR(plan[i].lower, expected[i].lower, 1e-9) << plan[i].id;
        EXPECT_NEAR(plan[i].upper, expected[i].upper, 1e-9) << plan[i].id;
    }
}

TEST(VoltageFrequencyPlanTest, RefusesSettingsThatMakeNoTest)
{
    const struct {
        const char* path;
        KesTree::Node::Value value;
        const char* text;
    } cases[] = {
        {"relay/startInput", 1LL, "an input each"},
        {"undervoltage/setting", 99.0, "27 U<"},
        // 95 V drop off at 99.75 V.
        {"undervoltage/setting", 95.0, "27 U<"},
        {"overvoltage/setting", 105.0, "59 U>"},
        {"overfrequency/setting", 50.0, "81 f>"},
        {"underfrequency/setting", 49.4, "0.72 Hz"},
        {"frequencyRate/setting", 0.05, "81 f<"},
        {"frequencyRate/delay", 2.0, "reaches the setting of 81 f<"},
    };
    for (const auto& test : cases) {
        const auto tree = makeTestObject();
        EXPECT_TRUE(VoltageFrequencyTest(Settings::fromNode(*tree)).check());
        if (std::string(test.path) == "frequencyRate/setting") {
            ASSERT_TRUE(tree->find("underfrequency/tolerance")->setValue(0.05));
            ASSERT_TRUE(tree->find("overfrequency/tolerance")->setValue(0.05));
            ASSERT_TRUE(tree->find("underfrequency/dropOff")->setValue(0.2));
        }
        ASSERT_TRUE(tree->find(test.path)->setValue(test.value)) << test.path;
        const auto result = VoltageFrequencyTest(Settings::fromNode(*tree)).check();
        ASSERT_FALSE(result) << test.path;
        EXPECT_THAT(result.getError()->getMessage(), testing::HasSubstr(test.text)) << test.path;
    }
    const auto tree = makeTestObject();
    for (const auto& promise : promises)
        ASSERT_TRUE(tree->find(std::string(promise.group) + "/used")->setValue(false));
    EXPECT_FALSE(VoltageFrequencyTest(Settings::fromNode(*tree)).check());
}
