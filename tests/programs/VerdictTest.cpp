#include "ModelRelay.h"

#include <Overcurrent/bench/BenchRelay.h>
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
TestResults measure(const ModelRelay& relay)
{
    TestResults results;
    results.settings = relay.settings;
    results.plan = relay.plan;
    results.end = RunEnd::Complete;
    for (const auto& planned : relay.plan.getPoints()) {
        PointResult point{planned, MeasureState::NoOperation, {}};
        if (const auto time = relay.getTime(outputsOf(relay, planned)))
            point = {planned, MeasureState::Measured, KesDriver::DeviceTime(std::llround(*time * 1e6))};
        results.points.push_back(point);
    }
    if (!relay.settings.hasRamps())
        return results;
    const auto find = [&](const Ramp& ramp, auto hasChanged) {
        const auto multiples = ramp.getMultiples();
        const auto found = std::find_if(multiples.begin(), multiples.end(), [&](double multiple) {
            return hasChanged(outputsOfRamp(relay, multiple));
        });
        return found == multiples.begin() || found == multiples.end()
                   ? RampResult{MeasureState::NoOperation}
                   : RampResult{MeasureState::Measured, *found, *std::prev(found)};
    };
    results.pickUp = find(relay.plan.pickUp, [&](const auto& outputs) { return relay.picksUp(outputs); });
    results.dropOff = find(relay.plan.dropOff, [&](const auto& outputs) { return relay.dropsOff(outputs); });
    return results;
}

/// The same on a simulated bench, in full.
TestResults runAt(double speed, const ModelRelay& relay,
                  std::shared_ptr<KesDriver::ISimulatedTestObject> object)
{
    const auto& plan = relay.plan;
    struct Collector : ITestRunListener {
        void onPhase(const RunPhase&) override {}
        void onPoint(std::size_t, const PointResult& result) override { results.points.push_back(result); }
        void onPickUp(const RampResult& result) override { results.pickUp = result; }
        void onDropOff(const RampResult& result) override { results.dropOff = result; }
        TestResults results;
    };
    const auto device = std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, 7));
    EXPECT_TRUE(device->setSpeed(speed));
    device->connectTestObject(std::move(object));
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

TestResults run(const ModelRelay& relay)
{
    return runAt(100000, relay, std::make_shared<ModelRelayObject>(relay));
}

std::string describe(const TestResults& results)
{
    std::string text;
    for (const auto& point : results.points) {
        const auto evaluated = Evaluation::evaluate(results, point);
        text += Faults::wordOf(point.fault) + " " + std::to_string(point.multiple) + ": " +
                std::to_string(evaluated.measured.value_or(-1.0)) + " of " +
                std::to_string(evaluated.earliest) + " to " + std::to_string(evaluated.latest) +
                (evaluated.isPassed ? "\n" : " FAILED\n");
    }
    for (const auto& ramp : {results.pickUp, results.dropOff})
        if (ramp)
            text += std::to_string(ramp->without) + " to " + std::to_string(ramp->multiple) + "\n";
    return text;
}

using Draw = std::function<ModelRelay(std::mt19937&)>;
using Make = TestResults (*)(const ModelRelay&);

/// How many relays get another verdict than they should.
int countWrong(int count, const Draw& draw, Make make, Verdict right)
{
    std::mt19937 random(seed);
    int wrong = 0;
    for (int i = 0; i < count; ++i) {
        const auto relay = draw(random);
        const auto checked = relay.plan.check(relay.settings);
        EXPECT_TRUE(checked) << (checked ? "" : checked.getError()->getMessage());
        const auto results = make(relay);
        if (Evaluation::verdict(results) == right)
            continue;
        ++wrong;
        ADD_FAILURE() << "relay " << i << ", curve " << relay.settings[StageId::First].curve << "\n"
                      << describe(results);
    }
    return wrong;
}

} // namespace

TEST(VerdictTest, NoHealthyRelayFails)
{
    EXPECT_EQ(countWrong(1000, ModelRelay::healthy, measure, Verdict::Passed), 0);
    EXPECT_EQ(countWrong(1000, ModelRelay::healthyStages, measure, Verdict::Passed), 0);
}

TEST(VerdictTest, NoFaultyRelayPasses)
{
    EXPECT_EQ(countWrong(1000, ModelRelay::faulty, measure, Verdict::Failed), 0);
    EXPECT_EQ(countWrong(1000, ModelRelay::faultyStages, measure, Verdict::Failed), 0);
}

TEST(VerdictTest, TheRunAddsNoWrongVerdict)
{
    for (const auto& draw : {ModelRelay::healthy, ModelRelay::healthyStages})
        EXPECT_EQ(countWrong(40, draw, run, Verdict::Passed), 0);
    for (const auto& draw : {ModelRelay::faulty, ModelRelay::faultyStages})
        EXPECT_EQ(countWrong(40, draw, run, Verdict::Failed), 0);
}

TEST(VerdictTest, TheRunMeasuresWhatTheRelayDoes)
{
    std::mt19937 random(seed + 1);
    for (int i = 0; i < 20; ++i) {
        const auto relay = i % 2 ? ModelRelay::healthyStages(random) : ModelRelay::healthy(random);
        const auto results = run(relay);
        ASSERT_EQ(results.points.size(), relay.plan.countPoints()) << i;
        for (const auto& point : results.points)
            EXPECT_NEAR(static_cast<double>(point.time.count()),
                        *relay.getTime(outputsOf(relay, point)) * 1e6, 1.0)
                << i;
        if (!relay.settings.hasRamps())
            continue;
        EXPECT_TRUE(relay.picksUp(outputsOfRamp(relay, results.pickUp->multiple))) << i;
        EXPECT_FALSE(relay.picksUp(outputsOfRamp(relay, results.pickUp->without))) << i;
        EXPECT_TRUE(relay.dropsOff(outputsOfRamp(relay, results.dropOff->multiple))) << i;
        EXPECT_FALSE(relay.dropsOff(outputsOfRamp(relay, results.dropOff->without))) << i;
        EXPECT_NEAR(results.dropOff->without - results.dropOff->multiple, relay.plan.dropOff.step, 1e-9) << i;
    }
}

/// The relay of the simulated bench, which a user sees, with stages and faults of any kind.
TEST(VerdictTest, TheBenchRelayPasses)
{
    std::mt19937 random(seed + 2);
    for (int i = 0; i < 40; ++i) {
        auto relay = ModelRelay::healthyStages(random);
        auto& settings = relay.settings;
        auto& plan = relay.plan;
        settings.toleranceMilliseconds = 30.0;
        settings.tolerancePercent = 5.0;
        settings.currentTolerancePercent = 2.0;
        settings.debounceMilliseconds = 5.0;
        if (i % 2) {
            const bool isResidual = settings[StageId::Residual].isUsed && random() % 2;
            plan.faults = {isResidual ? Fault::N : allFaults[random() % 3]};
            plan.outputsPerPhase = 2 + static_cast<unsigned>(random() % 2);
        }
        const auto results = runAt(100000, relay, makeBenchRelay(settings, plan));
        EXPECT_EQ(Evaluation::verdict(results), Verdict::Passed) << i << "\n" << describe(results);
    }
}

/// At a speed at which the device's clock hardly moves between two steps: a disk that is still on its way
/// back would arrive too early.
TEST(VerdictTest, ADiskHasTheTimeToReset)
{
    ModelRelay relay;
    relay.settings[StageId::First].timeMultiplier = 0.05;
    relay.settings.resetTime = relay.reset = 5.0;
    relay.settings.rampContact = RampContactKind::NoRamps;
    relay.plan.multiples = {10.0, 2.0, 10.0};
    const auto results = runAt(100, relay, std::make_shared<ModelRelayObject>(relay));
    EXPECT_EQ(Evaluation::verdict(results), Verdict::Passed) << describe(results);
}
