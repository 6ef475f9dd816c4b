#include "RecordingListener.h"

#include <KesDriver/SimulatedKesto.h>

#include <support/SimulatedRelay.h>

#include <future>
#include <thread>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

using RealClock = std::chrono::steady_clock;

OutputState amperes(double value)
{
    OutputState outputs;
    outputs.currents[0].magnitude = value;
    return outputs;
}

class SimulatedKestoTest : public testing::Test {
protected:
    SimulatedKestoTest()
    {
        link->setListener(&listener);
        device->connectTestObject(std::make_shared<SimulatedRelay>(10.0, 123456us, 20ms));
    }
    ~SimulatedKestoTest() override { link->setListener(nullptr); }

    void start()
    {
        ASSERT_TRUE(link->connect());
        ASSERT_TRUE(link->startWorkingMode());
    }

    std::shared_ptr<SimulatedKesto> device = std::make_shared<SimulatedKesto>(KestoIdentifer(3, 17));
    RecordingListener listener;
    std::unique_ptr<IKestoLink> link = SimulatedKesto::createLink(device);
};

TEST_F(SimulatedKestoTest, ConnectsOneLinkAtATime)
{
    KestoIdentifer identifer;
    EXPECT_EQ(message(link->identify(identifer)), "KESTO-3 No. 00017 is not connected.");
    EXPECT_TRUE(link->connect());
    EXPECT_TRUE(link->connect());

    const auto other = SimulatedKesto::createLink(device, "the bench");
    EXPECT_EQ(message(other->connect()), "the bench is in use by another program.");
    link->disconnect();
    EXPECT_TRUE(other->connect());
}

TEST_F(SimulatedKestoTest, OutputsNeedWorkingModeAndSaneValues)
{
    ASSERT_TRUE(link->connect());
    EXPECT_EQ(message(link->setOutputs(amperes(1.0))), "The outputs are not switched on.");
    EXPECT_FALSE(link->runSequence({{amperes(1.0), 1s, {}}}));
    ASSERT_TRUE(link->startWorkingMode());
    EXPECT_EQ(message(link->setOutputs(amperes(33.0))), "IA: 33 A is above the limit of 32 A.");
    EXPECT_TRUE(link->setOutputs(amperes(2.0)));
    EXPECT_TRUE(link->runSequence({{amperes(3.0), 1h, {}}}));
    EXPECT_EQ(message(link->setOutputs(amperes(1.0))), "A sequence is running.");
    EXPECT_TRUE(link->stopWorkingMode());
    EXPECT_EQ(device->getOutputs(), OutputState{});
    EXPECT_TRUE(link->stopWorkingMode());
}

TEST_F(SimulatedKestoTest, SequenceRunsAlikeAtEverySpeed)
{
    const OutputSequence sequence = {
        {amperes(1.0), 200ms, {}},
        {amperes(12.0), 10s, InputCondition{1, true}},
        {amperes(12.0), 50ms, InputCondition{1, true}}, // closed already: ends as it begins
        {amperes(1.0), 100ms, InputCondition{1, false}},
        {amperes(1.0), 3min, {}},
    };
    for (const double speed : {1000.0, 1000.0, 77777.0, 1e6}) {
        listener.clear();
        ASSERT_TRUE(device->setSpeed(speed));
        start();
        ASSERT_TRUE(link->runSequence(sequence));
        ASSERT_TRUE(listener.waitFor("finished"));
        EXPECT_THAT(listener.getLines(), ElementsAre("step 0 0", "step 1 200000", "input 1 closed 323456",
                                                     "step 2 323456", "step 3 323456", "input 1 open 343456",
                                                     "step 4 343456", "finished complete 180343456"));
        EXPECT_TRUE(link->stopWorkingMode());
    }
}

TEST_F(SimulatedKestoTest, ListenerStopsBeforeTheNextEvent)
{
    int stopped = -1;
    device->setSpeed(1e6);
    listener.onLine = [&](const std::string& line) {
        if (line.starts_with("input 1 closed"))
            stopped = link->stopOutputs() ? 1 : 0;
    };
    start();
    ASSERT_TRUE(link->runSequence({{amperes(12.0), 124ms, {}}, {amperes(1.0), 1s, {}}}));
    ASSERT_TRUE(listener.waitFor("finished"));
    EXPECT_EQ(stopped, 1);
    const auto lines = listener.getLines();
    EXPECT_EQ(lines[1], "input 1 closed 123456");
    EXPECT_TRUE(lines[2].starts_with("finished incomplete")) << lines[2];
}

TEST_F(SimulatedKestoTest, StopsAtOnceAtSlowSpeed)
{
    device->setSpeed(1e-6);
    start();
    ASSERT_TRUE(link->runSequence({{amperes(12.0), 24h, {}}}));
    const auto before = RealClock::now();
    ASSERT_TRUE(link->stopOutputs());
    EXPECT_EQ(device->getOutputs(), OutputState{});
    ASSERT_TRUE(listener.waitFor("finished incomplete"));
    EXPECT_LT(RealClock::now() - before, 1s);
}

TEST_F(SimulatedKestoTest, FaultEndsTheOutputAndIsRepeated)
{
    device->setFaultRepeatInterval(5ms);
    start();
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h, {}}}));
    device->simulateOverload(0);
    ASSERT_TRUE(listener.waitFor("fault IAl", 3));
    EXPECT_EQ(device->getOutputs(), OutputState{});
    const auto lines = listener.getLines();
    EXPECT_EQ(lines[1], "fault IAl");
    EXPECT_TRUE(lines[2].starts_with("finished incomplete")) << lines[2];

    EXPECT_EQ(message(link->setOutputs(amperes(1.0))), "Fault: IA - overload");
    device->simulateOverload(6);
    KestoState state;
    ASSERT_TRUE(link->readState(state));
    EXPECT_EQ(state.error, "IA - overload");
    EXPECT_TRUE(link->stopWorkingMode());
    EXPECT_FALSE(link->startWorkingMode());

    device->clearFaults();
    EXPECT_TRUE(link->startWorkingMode());
    const std::pair<std::function<void()>, const char*> others[] = {
        {[this] { device->simulateOverheat(4); }, "fault UBh"},
        {[this] { device->simulateChannelLost(2); }, "fault ICd"},
        {[this] { device->simulateQuickShutdown(); }, "fault button"}};
    for (const auto& [fail, report] : others) {
        listener.clear();
        fail();
        EXPECT_TRUE(listener.waitFor(report)) << report;
        EXPECT_FALSE(link->startWorkingMode()) << report;
        device->clearFaults();
    }
}

TEST_F(SimulatedKestoTest, SilentDeviceIsLostWithinTheTimeout)
{
    device->setTimeout(50ms);
    start();
    ASSERT_TRUE(link->setOutputs(amperes(2.0)));
    device->setSilent(true);
    EXPECT_EQ(message(link->stopOutputs()), "KESTO-3 No. 00017 does not answer.");
    ASSERT_TRUE(listener.waitFor("lost"));
    EXPECT_FALSE(link->isConnected());
    EXPECT_EQ(device->getOutputs(), OutputState{});
    EXPECT_EQ(message(link->connect()), "KESTO-3 No. 00017 does not answer.");
    device->setSilent(false);
    EXPECT_TRUE(link->connect());

    // Without any call the link finds out by itself.
    listener.clear();
    device->setSilent(true);
    ASSERT_TRUE(listener.waitFor("lost"));
    EXPECT_EQ(listener.getLines().size(), 1U);
}

TEST_F(SimulatedKestoTest, SlowDeviceObeysAtOnceAndAnswersLate)
{
    start();
    ASSERT_TRUE(link->setOutputs(amperes(2.0)));
    device->setAnswerDelay(50ms);
    const auto before = RealClock::now();
    std::thread stopper([&] { EXPECT_TRUE(link->stopOutputs()); });
    while (device->getOutputs() != OutputState{} && RealClock::now() - before < 10s)
        std::this_thread::yield();
    EXPECT_EQ(device->getOutputs(), OutputState{});
    stopper.join();
    EXPECT_GE(RealClock::now() - before, 50ms);

    device->setTimeout(10ms);
    EXPECT_FALSE(link->stopOutputs());
    ASSERT_TRUE(listener.waitFor("lost"));
}

TEST_F(SimulatedKestoTest, DroppedConnectionSwitchesOffAndReconnects)
{
    start();
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h, {}}}));
    ASSERT_TRUE(link->setAuxDC(true, 220));
    device->simulateConnectionLoss();
    ASSERT_TRUE(listener.waitFor("lost"));
    EXPECT_THAT(listener.getLines(), ElementsAre("step 0 0", "lost"));
    EXPECT_EQ(device->getOutputs(), OutputState{});
    start();
    EXPECT_TRUE(link->setOutputs(amperes(1.0)));
    KestoState state;
    ASSERT_TRUE(link->readState(state));
    EXPECT_FALSE(state.isAuxDCEnabled);
}

TEST_F(SimulatedKestoTest, DeviceMayGoFirst)
{
    start();
    ASSERT_TRUE(link->runSequence({{amperes(12.0), 1h, {}}}));
    device.reset();
    EXPECT_TRUE(listener.waitFor("lost"));
    EXPECT_FALSE(link->isConnected());
    EXPECT_FALSE(link->stopOutputs());
}

TEST_F(SimulatedKestoTest, LinkMayBeDestroyedFromInsideAReport)
{
    std::promise<void> isIdle;
    std::promise<void> isDestroyed;
    listener.onLine = [&](const std::string& line) {
        if (!line.starts_with("step"))
            return;
        isIdle.get_future().wait();
        link.reset();
        device.reset();
        isDestroyed.set_value();
    };
    start();
    ASSERT_TRUE(link->runSequence({{amperes(12.0), 1h, {}}}));
    isIdle.set_value();
    isDestroyed.get_future().wait();
    link = SimulatedKesto::createLink(nullptr, "nothing");
    EXPECT_EQ(message(link->connect()), "nothing cannot be reached: there is no device at this address.");
}

TEST_F(SimulatedKestoTest, ReplacedListenerIsNotCalledAnyMore)
{
    device->setSpeed(1e6);
    start();
    for (int round = 0; round < 200; ++round) {
        auto own = std::make_unique<RecordingListener>();
        link->setListener(own.get());
        ASSERT_TRUE(link->setOutputs(amperes(round % 2 == 0 ? 20.0 : 0.0)));
        link->setListener(nullptr);
        own.reset();
    }
}

/// A contact that changes without end at one moment must neither hang the device nor its callers.
struct Buzzer : ISimulatedTestObject {
    void reset(DeviceTime) override {}
    void applyOutputs(const OutputState&, DeviceTime) override {}
    std::optional<InputEvent> getNextChange() const override { return InputEvent{99, true, DeviceTime(0)}; }
    void acceptChange() override {}
};

TEST_F(SimulatedKestoTest, RestlessContactLeavesTheDeviceUsable)
{
    ASSERT_TRUE(device->connectTestObject(std::make_shared<Buzzer>()));
    start();
    EXPECT_TRUE(link->setOutputs(amperes(1.0)));
    EXPECT_TRUE(link->stopOutputs());
    EXPECT_TRUE(listener.getLines().empty());
}

} // namespace
