#include <Overcurrent/run/TestRun.h>

#include <KesDriver/simulated/SimulatedNetwork.h>

#include <support/SimulatedRelay.h>

#include <gmock/gmock.h>

#include <future>
#include <set>
#include <tuple>
#include <utility>

using namespace Overcurrent;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

struct Recorder : ITestRunListener {
    void onPhase(const RunPhase& phase) override
    {
        const bool wasCooling = std::exchange(isCooling, phase.coolingSeconds > 0.0);
        coolings += isCooling && !wasCooling ? 1 : 0;
        EXPECT_GE(phase.times.share, times.share);
        EXPECT_LE(phase.times.share, 1.0);
        EXPECT_GE(phase.times.elapsed, times.elapsed);
        times = phase.times;
        phases.emplace(phase.kind, phase.number, phase.repetition);
    }
    void onPoint(std::size_t, const PointResult& result) override { points.push_back(result); }
    void onPickUp(const RampResult& result) override { pickUp = result; }
    void onDropOff(const RampResult& result) override { dropOff = result; }

    std::vector<PointResult> points;
    std::optional<RampResult> pickUp;
    std::optional<RampResult> dropOff;
    KesMeasure::RunTimes times;
    std::set<std::tuple<RunPhase::Kind, std::size_t, unsigned>> phases;
    bool isCooling = false;
    int coolings = 0;
};

/// Adds up the seconds for which it has carried current.
class WatchedRelay : public KesTest::SimulatedRelay {
public:
    using SimulatedRelay::SimulatedRelay;

    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time) override
    {
        if (_amperes > 0.0)
            carried += std::chrono::duration<double>(time - _since).count();
        _amperes = outputs.currents[0].magnitude;
        _since = time;
        SimulatedRelay::applyOutputs(outputs, time);
    }

    double carried = 0.0;

private:
    double _amperes = 0.0;
    KesDriver::DeviceTime _since{0};
};

/// Both contacts close by themselves soon after the working mode has begun.
class StuckRelay : public KesDriver::ISimulatedTestObject {
public:
    void reset(KesDriver::DeviceTime time) override
    {
        _next = 0;
        _from = time;
    }
    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime) override
    {
        largest = std::max(largest, outputs.currents[0].magnitude);
    }
    std::optional<KesDriver::InputEvent> getNextChange() const override
    {
        if (_next == 2)
            return std::nullopt;
        return KesDriver::InputEvent{_next + 1, true, _from + (_next + 1) * 1ms};
    }
    void acceptChange() override { ++_next; }

    double largest = 0.0;

private:
    unsigned _next = 0;
    KesDriver::DeviceTime _from{0};
};

/// Its contact stays closed after a current that was hardly large enough.
class StickyRelay : public KesTest::SimulatedRelay {
public:
    using SimulatedRelay::SimulatedRelay;

    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time) override
    {
        const double amperes = outputs.currents[0].magnitude;
        if (amperes > 0.0 || _last == 0.0 || _last > 1.5)
            SimulatedRelay::applyOutputs(outputs, time);
        _last = amperes > 0.0 ? amperes : _last;
    }

private:
    double _last = 0.0;
};

/// A device on a bench of its own, in working mode.
class TestRunTest : public testing::Test {
protected:
    TestRunTest()
    {
        network.add(address, device);
        EXPECT_TRUE(device->setSpeed(5000));
        plan.multiples = {2.0, 5.0};
        plan.timeout = 20.0;
        plan.goesOn = true;
    }

    RunEnd run(std::shared_ptr<KesDriver::ISimulatedTestObject> relay)
    {
        device->connectTestObject(std::move(relay));
        EXPECT_TRUE(kesto.connect());
        EXPECT_TRUE(kesto.startWorkingMode());
        TestRun test(settings, plan, kesto, control, recorder);
        const auto end = test.execute();
        EXPECT_EQ(device->getOutputs(), KesDriver::OutputState());
        (void)kesto.stopWorkingMode();
        return end;
    }

    static constexpr KesDevice::Kesto::Address address{KesDevice::Kesto::Address::Bytes{10, 0, 0, 1}};
    std::shared_ptr<KesDriver::SimulatedKesto> device =
        std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, 7));
    KesDriver::SimulatedNetwork network;
    const std::shared_ptr<KesDevice::Kesto> owned =
        KesDevice::Kesto::create(address, network.createLink(address));
    KesDevice::Kesto& kesto = *owned;
    RelaySettings settings;
    TestPlan plan;
    KesMeasure::RunControl control;
    Recorder recorder;
};

PointResult measured(double multiple, KesDriver::DeviceTime time)
{
    return {{Fault::A, multiple}, MeasureState::Measured, time};
}

} // namespace

TEST_F(TestRunTest, MeasuresTheRelaysTimesExactly)
{
    // Starts with neither ramp: its only contact is the trip contact.
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(1.5, 345678us, 10ms)), RunEnd::Complete);
    EXPECT_THAT(recorder.points, ElementsAre(measured(2.0, 345678us), measured(5.0, 345678us)));
    EXPECT_EQ(recorder.pickUp->state, MeasureState::NoOperation);
    EXPECT_EQ(recorder.dropOff->state, MeasureState::NoOperation);
    EXPECT_EQ(recorder.phases.size(), 4u);
}

TEST_F(TestRunTest, APointWithoutOperationEndsTheTestUnlessThePlanGoesOn)
{
    const auto relay = std::make_shared<KesTest::SimulatedRelay>(3.0, 1s, 10ms);
    plan.repetitions = 3;
    EXPECT_EQ(run(relay), RunEnd::Complete);
    auto threeTimes = measured(5.0, 1s);
    threeTimes.takeSingles({1s, 1s, 1s});
    EXPECT_THAT(recorder.points,
                ElementsAre(PointResult{{Fault::A, 2.0}, MeasureState::NoOperation, {}}, threeTimes));
    EXPECT_EQ(recorder.phases.size(), 1u + 3u + 2u) << "what has not operated is not burnt again";
    recorder = {};
    plan.goesOn = false;
    EXPECT_EQ(run(relay), RunEnd::Ended);
    EXPECT_THAT(recorder.points, ElementsAre(PointResult{{Fault::A, 2.0}, MeasureState::NoOperation, {}}));
    EXPECT_FALSE(recorder.pickUp);
}

TEST_F(TestRunTest, AContactThatIsClosedBeforeTheCurrentKeepsItOff)
{
    const auto relay = std::make_shared<StuckRelay>();
    EXPECT_EQ(run(relay), RunEnd::Complete);
    for (const auto& point : recorder.points)
        EXPECT_EQ(point.state, MeasureState::NotReset);
    EXPECT_EQ(recorder.points.size(), 2u);
    EXPECT_EQ(recorder.pickUp->state, MeasureState::NotReset);
    EXPECT_EQ(recorder.dropOff->state, MeasureState::NotReset);
    EXPECT_EQ(relay->largest, 0.0);
    plan.goesOn = false;
    recorder = {};
    EXPECT_EQ(run(relay), RunEnd::Ended);
}

TEST_F(TestRunTest, AContactThatIsClosedWhenTheCurrentComesIsEarly)
{
    settings.rampContact = RampContactKind::NoRamps;
    settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
    settings[StageId::First].definiteTime = 0.1;
    // The step ends after the longest debouncing, which is no short part of this point.
    settings.debounceMilliseconds = 100.0;
    // It closes once the device has seen it open, and opens after the point.
    const Kes::ScopedConnection listener =
        kesto.signalReport.connect([this, ends = 0](const KesDriver::Report& report) mutable {
            if (std::holds_alternative<KesDriver::SequenceEvent>(report))
                device->setInput(1, ++ends % 2 == 1);
        });
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(1000.0, 1s, 10ms)), RunEnd::Complete);
    ASSERT_EQ(recorder.points.size(), 2u);
    for (const auto& point : recorder.points)
        EXPECT_EQ(point.state, MeasureState::ContactEarly);
}

/// A relay that never trips carries current no longer than a healthy one and a margin, not for the time-out.
TEST_F(TestRunTest, ARelayThatDoesNotTripIsNotBurnt)
{
    plan.multiples = {20.0};
    plan.timeout = 60.0;
    settings.rampContact = RampContactKind::NoRamps;
    const auto relay = std::make_shared<WatchedRelay>(1000.0, 1s, 10ms);
    EXPECT_EQ(run(relay), RunEnd::Complete);
    EXPECT_EQ(recorder.points[0].state, MeasureState::NoOperation);
    // 2.267 s at 20 times Is, 5 % of tolerance, 20 % of margin, and a few milliseconds.
    EXPECT_LT(relay->carried, 2.95);
    EXPECT_GT(relay->carried, 2.8);
}

TEST_F(TestRunTest, WithoutRampsOnlyThePointsAreMeasured)
{
    settings.rampContact = RampContactKind::NoRamps;
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(1.5, 345678us, 10ms)), RunEnd::Complete);
    EXPECT_EQ(recorder.points.size(), 2u);
    EXPECT_FALSE(recorder.pickUp || recorder.dropOff);
    EXPECT_EQ(recorder.phases.size(), 2u);
}

TEST_F(TestRunTest, TheTripContactServesForTheRamps)
{
    settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
    settings.rampContact = RampContactKind::ByTripContact;
    plan.minimumRatio = 0.95;
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(1.033, 1s, 10ms)), RunEnd::Complete);
    EXPECT_NEAR(recorder.pickUp->multiple, 1.04, 1e-9);
    EXPECT_NEAR(recorder.pickUp->without, 1.03, 1e-9);
    EXPECT_NEAR(recorder.dropOff->multiple, 1.03, 1e-9);
    EXPECT_NEAR(recorder.dropOff->without, 1.04, 1e-9);
    recorder = {};
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(0.5, 1s, 10ms)), RunEnd::Complete);
    EXPECT_EQ(recorder.dropOff->state, MeasureState::NoDropOff) << "it has picked up";
    recorder = {};
    EXPECT_EQ(run(std::make_shared<StickyRelay>(1.033, 1s, 10ms)), RunEnd::Complete);
    EXPECT_EQ(recorder.points.size(), 2u);
    EXPECT_EQ(recorder.pickUp->state, MeasureState::NotReset) << "after the coarse ramp";
}

/// Three points that are each a good half of what the relay withstands.
TEST_F(TestRunTest, AWarmRelayCoolsDownFirst)
{
    settings.nominalCurrent = 0.4;
    settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
    settings[StageId::First].definiteTime = 2.0;
    settings.rampContact = RampContactKind::NoRamps;
    plan.multiples = {20.0, 20.0, 20.0};
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(1.5, 2s, 10ms)), RunEnd::Complete);
    EXPECT_EQ(recorder.points.size(), 3u);
    EXPECT_EQ(recorder.coolings, 2);
}

/// The recording among others: without the contact's change the relay would be found not to operate.
TEST_F(TestRunTest, AnEventThatIsNotTakenIsAFaultAndNoVerdict)
{
    for (unsigned number = 1; number <= 3; ++number) {
        recorder = {};
        const Kes::ScopedConnection listener =
            kesto.signalReport.connect([&, left = number](const KesDriver::Report& report) mutable {
                if (std::holds_alternative<KesDriver::InputEvent>(report) && --left == 0)
                    throw std::bad_alloc();
            });
        EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(1.5, 345678us, 10ms)), RunEnd::Fault);
        EXPECT_LT(recorder.points.size(), 2U);
    }
}

TEST_F(TestRunTest, NonsenseFromTheDeviceEndsTheRunWithoutResults)
{
    device->connectTestObject(std::make_shared<KesTest::SimulatedRelay>(1.5, 1s, 10ms));
    EXPECT_TRUE(kesto.connect());
    EXPECT_TRUE(kesto.startWorkingMode());
    device->setNonsense(true);
    TestRun test(settings, plan, kesto, control, recorder);
    auto end = std::async(std::launch::async, [&] { return test.execute(); });
    if (end.wait_for(3s) != std::future_status::ready)
        control.stop();
    EXPECT_NE(end.get(), RunEnd::Complete);
}
