#include "ModelRelay.h"

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/run/TestRun.h>

#include <KesDriver/simulated/SimulatedNetwork.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using namespace Overcurrent;
using KesMeasure::Verdict;

namespace {

constexpr std::mt19937::result_type seed = 20240311;

/// What a test without any fault of its own would measure, with a ramp of one run.
TestResults measure(const ModelRelay& relay, const TestPlan& plan)
{
    TestResults results;
    results.settings = relay.settings;
    results.plan = plan;
    results.end = RunEnd::Complete;
    for (const double multiple : plan.multiples) {
        PointResult point{multiple, MeasureState::NoOperation, {}};
        if (!relay.neverTrips && multiple > relay.getPickUp())
            point = {multiple, MeasureState::Measured,
                     KesDriver::DeviceTime(std::llround(relay.getTime(multiple) * 1e6))};
        results.points.push_back(point);
    }
    if (!relay.settings.hasRamps())
        return results;
    const auto find = [](const Ramp& ramp, auto hasChanged) {
        const auto multiples = ramp.getMultiples();
        const auto found = std::find_if(multiples.begin(), multiples.end(), hasChanged);
        return found == multiples.begin() || found == multiples.end()
                   ? RampResult{MeasureState::NoOperation}
                   : RampResult{MeasureState::Measured, *found, *std::prev(found)};
    };
    results.pickUp = find(plan.pickUp, [&](double multiple) { return multiple > relay.getPickUp(); });
    results.dropOff = find(plan.dropOff, [&](double multiple) { return multiple < relay.getDropOff(); });
    return results;
}

/// The same on a simulated bench, in full.
TestResults runAt(double speed, const ModelRelay& relay, const TestPlan& plan)
{
    struct Collector : ITestRunListener {
        void onPhase(const RunPhase&) override {}
        void onPoint(std::size_t, const PointResult& result) override { results.points.push_back(result); }
        void onPickUp(const RampResult& result) override { results.pickUp = result; }
        void onDropOff(const RampResult& result) override { results.dropOff = result; }
        TestResults results;
    };
    const auto device = std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, 7));
    EXPECT_TRUE(device->setSpeed(speed));
    device->connectTestObject(std::make_shared<ModelRelayObject>(relay));
    const KesDevice::Kesto::Address address({10, 0, 0, 1});
    KesDriver::SimulatedNetwork network;
    network.add(address, device);
    const auto kesto = KesDevice::Kesto::create(address, network.createLink(address));
    EXPECT_TRUE(kesto->connect());
    EXPECT_TRUE(kesto->startWorkingMode());
    KesMeasure::RunControl control;
    Collector collector;
    collector.results.settings = relay.settings;
    collector.results.plan = plan;
    collector.results.end = TestRun(relay.settings, plan, *kesto, control, collector).execute();
    return collector.results;
}

TestResults run(const ModelRelay& relay, const TestPlan& plan)
{
    return runAt(100000, relay, plan);
}

std::string describe(const TestResults& results)
{
    std::string text;
    for (const auto& point : results.points) {
        const auto evaluated = Evaluation::evaluate(results, point);
        text += std::to_string(point.multiple) + ": " + std::to_string(evaluated.measured.value_or(-1.0)) +
                " of " + std::to_string(evaluated.earliest) + " to " + std::to_string(evaluated.latest) +
                (evaluated.isPassed ? "\n" : " FAILED\n");
    }
    for (const auto& ramp : {results.pickUp, results.dropOff})
        if (ramp)
            text += std::to_string(ramp->without) + " to " + std::to_string(ramp->multiple) + "\n";
    return text;
}

using Draw = std::function<ModelRelay(std::mt19937&)>;
using Make = TestResults (*)(const ModelRelay&, const TestPlan&);

/// How many relays get another verdict than they should.
int countWrong(int count, const Draw& draw, Make make, Verdict right)
{
    std::mt19937 random(seed);
    const auto plan = modelPlan();
    int wrong = 0;
    for (int i = 0; i < count; ++i) {
        const auto relay = draw(random);
        const auto checked = plan.check(relay.settings);
        EXPECT_TRUE(checked) << (checked ? "" : checked.getError()->getMessage());
        const auto results = make(relay, plan);
        if (Evaluation::verdict(results) == right)
            continue;
        ++wrong;
        ADD_FAILURE() << "relay " << i << ", curve " << relay.settings.curve << "\n" << describe(results);
    }
    return wrong;
}

ModelRelay drawFaulty(std::mt19937& random)
{
    return ModelRelay::faulty(random, modelPlan());
}

} // namespace

TEST(VerdictTest, NoHealthyRelayFails)
{
    EXPECT_EQ(countWrong(1000, ModelRelay::healthy, measure, Verdict::Passed), 0);
}

TEST(VerdictTest, NoFaultyRelayPasses)
{
    EXPECT_EQ(countWrong(1000, drawFaulty, measure, Verdict::Failed), 0);
}

TEST(VerdictTest, TheRunAddsNoWrongVerdict)
{
    EXPECT_EQ(countWrong(40, ModelRelay::healthy, run, Verdict::Passed), 0);
    EXPECT_EQ(countWrong(40, drawFaulty, run, Verdict::Failed), 0);
}

TEST(VerdictTest, TheRunMeasuresWhatTheRelayDoes)
{
    std::mt19937 random(seed + 1);
    const auto plan = modelPlan();
    for (int i = 0; i < 20; ++i) {
        const auto relay = ModelRelay::healthy(random);
        const auto results = run(relay, plan);
        ASSERT_EQ(results.points.size(), plan.multiples.size()) << i;
        for (const auto& point : results.points)
            EXPECT_NEAR(static_cast<double>(point.time.count()), relay.getTime(point.multiple) * 1e6, 1.0)
                << i;
        if (!relay.settings.hasRamps())
            continue;
        EXPECT_GT(results.pickUp->multiple, relay.getPickUp()) << i;
        EXPECT_LE(results.pickUp->without, relay.getPickUp()) << i;
        EXPECT_LT(results.dropOff->multiple, relay.getDropOff()) << i;
        EXPECT_GE(results.dropOff->without, relay.getDropOff()) << i;
        EXPECT_NEAR(results.dropOff->without - results.dropOff->multiple, plan.dropOff.step, 1e-9) << i;
    }
}

/// At a speed at which the device's clock hardly moves between two steps: a disk that is still on its way
/// back would arrive too early.
TEST(VerdictTest, ADiskHasTheTimeToReset)
{
    ModelRelay relay;
    relay.settings.timeMultiplier = 0.05;
    relay.settings.resetTime = relay.reset = 5.0;
    relay.settings.rampContact = RampContactKind::NoRamps;
    auto plan = modelPlan();
    plan.multiples = {10.0, 2.0, 10.0};
    const auto results = runAt(100, relay, plan);
    EXPECT_EQ(Evaluation::verdict(results), Verdict::Passed) << describe(results);
}
