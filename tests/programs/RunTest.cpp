#include <Overcurrent/run/TestRun.h>

#include <programs/KestoBench.h>
#include <programs/WatchedRelay.h>

#include <gmock/gmock.h>

#include <set>
#include <tuple>

using namespace Overcurrent;
using namespace std::chrono_literals;
using KesTest::WatchedRelay;
using testing::ElementsAre;

namespace {

struct Recorder : ITestRunListener {
    void onPhase(const RunPhase& phase) override
    {
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
};

/// A device on a bench of its own, in working mode.
class TestRunTest : public testing::Test {
protected:
    TestRunTest()
    {
        plan.multiples = {2.0, 5.0};
        plan.timeout = 20.0;
        plan.goesOn = true;
    }

    RunEnd run(const std::shared_ptr<WatchedRelay>& relay, unsigned stuckInput = 0)
    {
        recorder = {};
        bench.begin(relay);
        if (stuckInput > 0)
            device->setInput(stuckInput, true);
        TestRun test(settings, plan, kesto, control, recorder);
        const auto end = test.execute();
        EXPECT_EQ(device->getOutputs(), KesDriver::OutputState());
        (void)kesto.stopWorkingMode();
        return end;
    }
    /// Calls with the number of sequences that have ended; those that wait for the contacts are some too.
    Kes::ScopedConnection onEnd(std::function<void(int)> slot)
    {
        return kesto.signalReport.connect([slot = std::move(slot), ends = 0](const auto& report) mutable {
            if (std::holds_alternative<KesDriver::SequenceEvent>(report))
                slot(++ends);
        });
    }

    KesTest::KestoBench bench{5000};
    KesDriver::SimulatedKesto* const device = bench.device.get();
    KesDevice::Kesto& kesto = *bench.kesto;
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
    EXPECT_EQ(run(std::make_shared<WatchedRelay>(1.5, 345678us, 10ms)), RunEnd::Complete);
    EXPECT_THAT(recorder.points, ElementsAre(measured(2.0, 345678us), measured(5.0, 345678us)));
    EXPECT_EQ(recorder.pickUp->state, MeasureState::NoOperation);
    EXPECT_EQ(recorder.dropOff->state, MeasureState::NoOperation);
    EXPECT_EQ(recorder.phases.size(), 4u);
}

TEST_F(TestRunTest, APointWithoutOperationEndsTheTestUnlessThePlanGoesOn)
{
    const auto relay = std::make_shared<WatchedRelay>(3.0, 1s, 10ms);
    plan.repetitions = 3;
    EXPECT_EQ(run(relay), RunEnd::Complete);
    auto threeTimes = measured(5.0, 1s);
    threeTimes.takeSingles({1s, 1s, 1s});
    EXPECT_THAT(recorder.points,
                ElementsAre(PointResult{{Fault::A, 2.0}, MeasureState::NoOperation, {}}, threeTimes));
    EXPECT_EQ(recorder.phases.size(), 1u + 3u + 2u) << "what has not operated is not burnt again";
    plan.goesOn = false;
    EXPECT_EQ(run(relay), RunEnd::Ended);
    EXPECT_THAT(recorder.points, ElementsAre(PointResult{{Fault::A, 2.0}, MeasureState::NoOperation, {}}));
    EXPECT_FALSE(recorder.pickUp);
}

TEST_F(TestRunTest, AContactThatIsClosedBeforeTheCurrentKeepsItOff)
{
    const auto relay = std::make_shared<WatchedRelay>(1.5, 1s, 10ms);
    // Once closed it stays so: the start contact first, alone.
    for (const unsigned input : {settings.startInput, settings.tripInput}) {
        plan.goesOn = true;
        EXPECT_EQ(run(relay, input), RunEnd::Complete);
        for (const auto& point : recorder.points)
            EXPECT_EQ(point.state, MeasureState::NotReset) << input;
        EXPECT_EQ(recorder.points.size(), 2u);
        EXPECT_EQ(recorder.pickUp->state, MeasureState::NotReset);
        EXPECT_EQ(recorder.dropOff->state, MeasureState::NotReset);
        EXPECT_EQ(relay->largest, 0.0);
        plan.goesOn = false;
        EXPECT_EQ(run(relay, input), RunEnd::Ended);
    }
}

TEST_F(TestRunTest, AContactThatIsClosedWhenTheCurrentComesIsEarly)
{
    settings.rampContact = RampContactKind::NoRamps;
    settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
    settings[StageId::First].definiteTime = 0.1;
    // The step ends after the longest debouncing, which is no short part of this point.
    settings.debounceMilliseconds = 100.0;
    // It closes once the device has seen it open, and opens after the point.
    const auto listener = onEnd([this](int ends) { device->setInput(1, ends % 2 == 1); });
    EXPECT_EQ(run(std::make_shared<WatchedRelay>(1000.0, 1s, 10ms)), RunEnd::Complete);
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

TEST_F(TestRunTest, ARelayHasItsTimeToReset)
{
    // Slow: the device's clock hardly moves between two steps by itself.
    EXPECT_TRUE(device->setSpeed(100));
    settings.resetTime = 5.0;
    settings.rampContact = RampContactKind::NoRamps;
    const auto relay = std::make_shared<WatchedRelay>(1.5, 100ms, 10ms);
    EXPECT_EQ(run(relay), RunEnd::Complete);
    EXPECT_GE(relay->shortestRest, 5.0);
    EXPECT_FALSE(recorder.pickUp || recorder.dropOff);
    EXPECT_EQ(recorder.phases.size(), 2u);
}

TEST_F(TestRunTest, TheTripContactServesForTheRamps)
{
    settings[StageId::First].curve = CurveKind::DefiniteTimeCurve;
    settings.rampContact = RampContactKind::ByTripContact;
    plan.minimumRatio = 0.95;
    EXPECT_EQ(run(std::make_shared<WatchedRelay>(1.033, 1s, 400ms)), RunEnd::Complete);
    EXPECT_NEAR(recorder.pickUp->multiple, 1.04, 1e-9);
    EXPECT_NEAR(recorder.pickUp->without, 1.03, 1e-9);
    EXPECT_NEAR(recorder.dropOff->multiple, 1.03, 1e-9);
    EXPECT_NEAR(recorder.dropOff->without, 1.04, 1e-9);
    EXPECT_EQ(run(std::make_shared<WatchedRelay>(0.5, 1s, 10ms)), RunEnd::Complete);
    EXPECT_EQ(recorder.dropOff->state, MeasureState::NoDropOff) << "it has picked up";
    // Twice for each point, once before the coarse ramp, and once after it.
    const auto stuck = onEnd([this](int ends) { device->setInput(1, ends == 6); });
    EXPECT_EQ(run(std::make_shared<WatchedRelay>(1.033, 1s, 10ms)), RunEnd::Complete);
    EXPECT_EQ(recorder.points.size(), 2u);
    EXPECT_EQ(recorder.pickUp->state, MeasureState::NotReset) << "after the coarse ramp";
}

/// The recording among others: without the contact's change the relay would be found not to operate.
TEST_F(TestRunTest, AnEventThatIsNotTakenIsAFaultAndNoVerdict)
{
    for (unsigned number = 1; number <= 3; ++number) {
        const Kes::ScopedConnection listener =
            kesto.signalReport.connect([&, left = number](const KesDriver::Report& report) mutable {
                if (std::holds_alternative<KesDriver::InputEvent>(report) && --left == 0)
                    throw std::bad_alloc();
            });
        EXPECT_EQ(run(std::make_shared<WatchedRelay>(1.5, 345678us, 10ms)), RunEnd::Fault);
        EXPECT_LT(recorder.points.size(), 2U);
    }
}
