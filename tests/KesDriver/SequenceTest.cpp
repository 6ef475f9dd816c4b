#include "DeviceTest.h"

#include <mutex>
#include <tuple>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

/// Contacts that move by a timetable, which begins when the first current does; writes down the outputs.
class ScriptedContacts : public ISimulatedTestObject {
public:
    explicit ScriptedContacts(std::vector<InputEvent> changes) : _changes(std::move(changes)) {}

    void reset(DeviceTime) override {}
    void applyOutputs(const OutputState& outputs, DeviceTime time) override
    {
        std::lock_guard lock(_mutex);
        if (!_start && outputs.currents[0].magnitude > 0.0)
            _start = time;
        if (_start)
            _seen.push_back({outputs, time - *_start});
    }
    std::optional<InputEvent> getNextChange() const override
    {
        if (!_start || _next == _changes.size())
            return std::nullopt;
        auto change = _changes[_next];
        change.time += *_start;
        return change;
    }
    void acceptChange() override { ++_next; }

    /// The outputs and when they came.
    std::vector<std::pair<OutputState, DeviceTime>> getSeen() const
    {
        std::lock_guard lock(_mutex);
        return _seen;
    }

private:
    const std::vector<InputEvent> _changes;
    std::size_t _next = 0;
    std::optional<DeviceTime> _start;
    mutable std::mutex _mutex;
    std::vector<std::pair<OutputState, DeviceTime>> _seen;
};

OutputSequence ramp(double from, double perSecond, DeviceTime duration)
{
    OutputStep step{amperes(from), duration};
    step.ramp.currents[0].magnitude = perSecond;
    return {step};
}

class SequenceTest : public DeviceTest {
protected:
    explicit SequenceTest(const OutputLimits& limits = {}) : DeviceTest(limits)
    {
        device->setSpeed(1000.0);
        device->setFaultRepeatInterval(1h);
        start();
    }
};

TEST_F(SequenceTest, RampIsPutOutEachMillisecondAndEndsExactly)
{
    auto contacts = std::make_shared<ScriptedContacts>(std::vector<InputEvent>{{1, true, 13500us}});
    device->connectTestObject(contacts);
    auto sequence = ramp(1.0, 1000.0 / 3.0, 3ms);
    sequence.push_back(ramp(2.0, -100.0, 20ms).front());
    sequence.back().endOn = InputCondition{1, true};
    EXPECT_THAT(run(sequence), ElementsAre("step 0 0", "step 1 3000", "input 1 closed 13500 in 1",
                                           "finished complete 13500"));
    const auto seen = contacts->getSeen();
    const std::pair<DeviceTime, double> expected[] = {
        {0us, 1.0},  {1ms, 4.0 / 3.0}, {2ms, 5.0 / 3.0}, {3ms, 2.0},      {3ms, 2.0},    {4ms, 1.9},
        {5ms, 1.8},  {6ms, 1.7},       {7ms, 1.6},       {8ms, 1.5},      {9ms, 1.4},    {10ms, 1.3},
        {11ms, 1.2}, {12ms, 1.1},      {13ms, 1.0},      {13500us, 0.95}, {13500us, 0.0}};
    ASSERT_EQ(seen.size(), std::size(expected));
    for (std::size_t i = 0; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i].second, expected[i].first) << i;
        EXPECT_NEAR(seen[i].first.currents[0].magnitude, expected[i].second, 1e-9) << i;
    }
}

TEST_F(SequenceTest, ConditionsEndAStep)
{
    using Changes = std::vector<InputEvent>;
    using Join = EndCondition::Join;
    const Changes oneTwo = {{1, true, 10ms}, {2, true, 20ms}, {1, false, 30ms}};
    const Changes bouncing = {{1, true, 10ms}, {1, false, 11ms}, {1, true, 12ms}, {1, false, 50ms}};
    const Changes closedBefore = {{1, true, 0ms}, {1, false, 20ms}, {1, true, 30ms}};
    // The condition belongs to the second step, which lasts from 5 to 105 ms.
    const std::tuple<const char*, Changes, EndCondition, const char*> cases[] = {
        {"single", oneTwo, InputCondition{1, true}, "step 2 10000"},
        {"opens", oneTwo, InputCondition{1, false, true}, "step 2 30000"},
        {"is open", oneTwo, InputCondition{1, false}, "step 2 5000"},
        {"never", oneTwo, InputCondition{3, true}, "step 2 105000"},
        {"any", oneTwo, {{{3, true}, {2, true}, {1, false, true}}, Join::Any}, "step 2 20000"},
        {"all", oneTwo, {{{1, true}, {2, true}}, Join::All}, "step 2 20000"},
        {"all at one time", oneTwo, {{{1, false, true}, {2, true}}, Join::All}, "step 2 30000"},
        {"not together", oneTwo, {{{1, true}, {2, true}, {3, true}}, Join::All}, "step 2 105000"},
        {"bounces", bouncing, {{{1, true}}, Join::Any, 20ms}, "step 2 32000"},
        {"short bounce", bouncing, {{{1, true}}, Join::Any, 1ms - 1us}, "step 2 10999"},
        {"too short", bouncing, {{{1, true}}, Join::Any, 40ms}, "step 2 105000"},
        {"debounced at once", oneTwo, {{{1, false}}, Join::Any, 2ms}, "step 2 7000"},
        {"interrupted", oneTwo, {{{1, true}, {2, true}}, Join::All, 15ms}, "step 2 105000"},
        {"level", closedBefore, InputCondition{1, true}, "step 2 5000"},
        {"edge", closedBefore, InputCondition{1, true, true}, "step 2 30000"},
    };
    for (const auto& [name, changes, condition, end] : cases) {
        device->connectTestObject(std::make_shared<ScriptedContacts>(changes));
        const auto lines = run({{amperes(1.0), 5ms}, {amperes(1.0), 100ms, condition}, {amperes(1.0), 1ms}});
        EXPECT_THAT(lines, Contains(end)) << name;
    }
}

TEST_F(SequenceTest, InputsBelongToTheStepTheyFallInto)
{
    const auto contacts = std::make_shared<ScriptedContacts>(std::vector<InputEvent>{
        {1, true, 2ms}, {2, true, 7ms}, {3, true, 18ms}, {4, true, 19ms}, {5, true, 40ms}});
    device->connectTestObject(contacts);
    OutputSequence sequence(3, {amperes(1.0), 5ms});
    sequence[0].faultDegrees = 0.0;
    sequence[0].ramp.currents[0].magnitude = 100.0;
    sequence[1] = {amperes(5.0), 1s, InputCondition{3, true, true}};
    sequence[1].faultDegrees = 180.0;
    run(sequence);
    ASSERT_TRUE(receiver->waitFor("input 5"));
    // The second input moves while the second step waits for its angle.
    EXPECT_THAT(receiver->getLines(),
                ElementsAre("step 0 0", "input 1 closed 2000 in 0", "input 2 closed 7000 in 0",
                            StartsWith("step 1 "), "input 3 closed 18000 in 1", "step 2 18000",
                            "input 4 closed 19000 in 2", "finished complete 23000", "input 5 closed 40000"));
    // The outputs stay as the first step has left them.
    const auto seen = contacts->getSeen();
    ASSERT_GT(seen.size(), 6U);
    EXPECT_EQ(seen[5].second, 5ms);
    EXPECT_NEAR(seen[5].first.currents[0].magnitude, 1.5, 1e-9);
    EXPECT_EQ(seen[6].first.currents[0].magnitude, 5.0);
    EXPECT_NEAR(static_cast<double>(seen[6].second.count()), 10e3, 1.0);
}

TEST_F(SequenceTest, StepsBeginOnTheAngleOfTheVoltage)
{
    OutputStep first{{}, 100ms};
    first.faultDegrees = 0.0;
    const std::tuple<DeviceTime, double, double, double, long> cases[] = {
        {100ms, 50.0, 0.0, 0.0, 100000},
        {100ms, 50.0, 0.0, 360000.0, 100000},
        {100ms, 50.0, 0.0, 90.0, 105000},
        {100ms, 50.0, 0.0, -90.0, 115000},
        {101ms, 50.0, 0.0, 0.0, 120000},
        {100ms, 60.0, 0.0, 180.0, 108333},
        {110ms, 25.0, 0.0, 0.0, 120000},
        {100us, 1000.0, 0.0, 0.0, 1000},
        {16667us, 60.0, 0.0, 0.0, 16667}, // The period has ended a third of a microsecond ago.
        {24h, 50.0, 0.0, 45.0, 86400002500},
        // 50 Hz on the way to 40 Hz: 45 periods in the second, the wave then has 40 Hz.
        {1s, 50.0, -10.0, 90.0, 1006250},
        // 50 Hz on the way to 55 Hz in half a second: 26.25 periods.
        {500ms, 50.0, 10.0, 0.0, 513636},
    };
    device->setSpeed(1e6);
    for (const auto& [duration, hertz, hertzPerSecond, degrees, begin] : cases) {
        first.duration = duration;
        first.outputs.voltageHertz = hertz;
        first.ramp = {};
        first.ramp.voltageHertz = hertzPerSecond;
        OutputStep second{{}, 1ms};
        second.faultDegrees = degrees;
        const auto lines = run({first, second});
        ASSERT_EQ(lines.size(), 3U);
        const long measured = std::stol(lines[1].substr(std::string("step 1 ").size()));
        EXPECT_NEAR(static_cast<double>(measured), static_cast<double>(begin), 1.0) << begin;
    }
}

TEST_F(SequenceTest, TooLargeABurdenIsAnOverload)
{
    device->setBurden(1.0);
    // 450 VA are 21.2 A: reached after 12 of the 30 ms, seen at the next millisecond.
    EXPECT_THAT(run(ramp(9.5, 1000.0, 20ms)),
                ElementsAre("step 0 0", "fault IAl", "finished incomplete 12000"));
    EXPECT_EQ(device->getOutputs(), OutputState{});
    device->clearFaults();
    EXPECT_THAT(run({{amperes(21.2), 1ms}}), ElementsAre("step 0 0", "finished complete 1000"));
    ASSERT_TRUE(link->setOutputs(amperes(21.2)));
    receiver->clear();
    device->setBurden(1.1);
    EXPECT_TRUE(receiver->waitFor("fault IAl"));
    EXPECT_EQ(device->getOutputs(), OutputState{});
}

OutputLimits weak()
{
    OutputLimits limits;
    limits.continuousAmperes = 10.0;
    limits.overloadDuration = 2s;
    limits.binaryInputs = 2;
    return limits;
}

class WeakDeviceTest : public SequenceTest {
protected:
    WeakDeviceTest() : SequenceTest(weak()) {}
};

TEST_F(WeakDeviceTest, OverheatsWhenItsDutyIsUsedUp)
{
    const auto high = amperes(11.0), low = amperes(10.0);
    OutputState all = high;
    all.currents[1] = all.currents[2] = {12.0, 0.0};
    device->setSpeed(1e6);
    // Cold at the beginning of each but for what is said.
    const OutputStep cooling{{}, 10s};
    EXPECT_THAT(run({{low, 24h}, {high, 2s}, cooling}), Contains("finished complete 86412000000"));
    EXPECT_THAT(run({{high, 1500ms}, {low, 1s}, {high, 1500ms}, {low, 1us}, cooling}),
                Contains("finished complete 14000001"));
    EXPECT_THAT(run({cooling, {high, 1500ms}, {low, 1s}, {high, 1501ms}}),
                ElementsAre("step 0 0", "step 1 10000000", "step 2 11500000", "step 3 12500000", "fault IAh",
                            "finished incomplete 14000000"));
    device->clearFaults();
    EXPECT_THAT(run({cooling, {all, 1h}}), ElementsAre("step 0 0", "step 1 10000000", "fault IAh IBh ICh",
                                                       "finished incomplete 12000000"));
    KestoState state;
    ASSERT_TRUE(link->readState(state));
    EXPECT_FALSE(state.isReady);
}

TEST_F(WeakDeviceTest, BinaryOutputsFollowTheSteps)
{
    OutputState outputs;
    outputs.binaryOutputs = 0b0101;
    device->setSpeed(1e-3);
    ASSERT_TRUE(link->setOutputs(outputs));
    EXPECT_EQ(device->getOutputs().binaryOutputs, 0b0101U);
    outputs.binaryOutputs = 0b1000;
    ASSERT_TRUE(link->runSequence({{outputs, 1h}}));
    EXPECT_EQ(device->getOutputs().binaryOutputs, 0b1000U);
    EXPECT_EQ(device->getEnergisings(), 0U);
    ASSERT_TRUE(link->stopOutputs());
    EXPECT_EQ(device->getOutputs().binaryOutputs, 0U);
    EXPECT_EQ(message(link->runSequence({{{}, 1s, InputCondition{3}}})),
              refusal("Step 1. Binary input 3 does not exist: the device has 2."));
}

TEST_F(WeakDeviceTest, HandAndContactCloseAnInputTogether)
{
    device->connectTestObject(std::make_shared<ScriptedContacts>(
        std::vector<InputEvent>{{1, true, 1ms}, {1, false, 2ms}, {2, true, 3ms}}));
    device->setInput(1, true);
    device->setInput(3, true); // there is none
    ASSERT_TRUE(receiver->waitFor("input 1 closed"));
    run({{amperes(1.0), 5ms}});
    device->setInput(1, false);
    ASSERT_TRUE(receiver->waitFor("input 1 open"));
    EXPECT_THAT(receiver->getLines(), ElementsAre("step 0 0", "input 2 closed 3000 in 0",
                                                  "finished complete 5000", StartsWith("input 1 open")));
}

} // namespace
