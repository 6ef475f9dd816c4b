#include <Overcurrent/run/TestRun.h>

#include <KesDriver/simulated/SimulatedNetwork.h>

#include <support/SimulatedRelay.h>

#include <gmock/gmock.h>

#include <future>

using namespace Overcurrent;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

struct Recorder : ITestRunListener {
    void onPhase(const RunPhase& phase) override
    {
        EXPECT_GE(phase.progress, progress);
        EXPECT_LE(phase.progress, 1.0);
        progress = phase.progress;
        ++phases;
    }
    void onPoint(const PointResult& result) override { points.push_back(result); }
    void onPickUp(const RampResult& result) override { pickUp = result; }
    void onDropOff(const RampResult& result) override { dropOff = result; }

    std::vector<PointResult> points;
    std::optional<RampResult> pickUp;
    std::optional<RampResult> dropOff;
    double progress = 0.0;
    int phases = 0;
};

/// Both contacts close by themselves soon after the working mode has begun.
class StuckRelay : public KesDriver::ISimulatedTestObject {
public:
    void reset(KesDriver::DeviceTime time) override
    {
        _next = 0;
        _from = time;
    }
    void applyOutputs(const KesDriver::OutputState&, KesDriver::DeviceTime) override {}
    std::optional<KesDriver::InputEvent> getNextChange() const override
    {
        if (_next == 2)
            return std::nullopt;
        return KesDriver::InputEvent{_next + 1, true, _from + (_next + 1) * 1ms};
    }
    void acceptChange() override { ++_next; }

private:
    unsigned _next = 0;
    KesDriver::DeviceTime _from{0};
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
    }

    RunEnd run(std::shared_ptr<KesDriver::ISimulatedTestObject> relay)
    {
        device->connectTestObject(std::move(relay));
        EXPECT_TRUE(kesto.connect());
        EXPECT_TRUE(kesto.startWorkingMode());
        TestRun test(settings, plan, kesto, control, recorder);
        const auto end = test.execute();
        EXPECT_EQ(device->getOutputs(), KesDriver::OutputState());
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
    return {multiple, MeasureState::Measured, time};
}

} // namespace

TEST_F(TestRunTest, MeasuresTheRelaysTimesExactly)
{
    // Starts with neither ramp: its only contact is the trip contact.
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(1.5, 345678us, 10ms)), RunEnd::Complete);
    EXPECT_THAT(recorder.points, ElementsAre(measured(2.0, 345678us), measured(5.0, 345678us)));
    EXPECT_EQ(recorder.pickUp->state, MeasureState::NoOperation);
    EXPECT_EQ(recorder.dropOff->state, MeasureState::NoOperation);
    EXPECT_EQ(recorder.phases, 4);
}

TEST_F(TestRunTest, APointWithoutOperationTakesTheTimeout)
{
    EXPECT_EQ(run(std::make_shared<KesTest::SimulatedRelay>(3.0, 1s, 10ms)), RunEnd::Complete);
    EXPECT_THAT(recorder.points,
                ElementsAre(PointResult{2.0, MeasureState::NoOperation, {}}, measured(5.0, 1s)));
}

TEST_F(TestRunTest, AContactThatIsClosedBeforeTheCurrentIsNoOperateTime)
{
    EXPECT_EQ(run(std::make_shared<StuckRelay>()), RunEnd::Complete);
    for (const auto& point : recorder.points)
        EXPECT_EQ(point.state, MeasureState::ContactEarly);
    EXPECT_EQ(recorder.points.size(), 2u);
    EXPECT_EQ(recorder.pickUp->state, MeasureState::ContactEarly);
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
