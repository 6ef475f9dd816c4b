#include "DeviceTest.h"

#include <support/SimulatedRelay.h>

#include <atomic>
#include <future>
#include <new>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class SimulatedKestoTest : public DeviceTest {
protected:
    SimulatedKestoTest()
    {
        device->connectTestObject(std::make_shared<SimulatedRelay>(10.0, 123456us, 20ms));
    }
};

TEST_F(SimulatedKestoTest, SequenceRunsAlikeAtEverySpeed)
{
    const OutputSequence sequence = {
        {amperes(1.0), 200ms},
        {amperes(12.0), 10s, InputCondition{1, true}},
        {amperes(12.0), 50ms, InputCondition{1, true}}, // closed already: ends as it begins
        {amperes(1.0), 100ms, InputCondition{1, false}},
        {amperes(1.0), 3min},
    };
    start();
    for (const double speed : {1000.0, 1000.0, 77777.0, 1e6}) {
        ASSERT_TRUE(device->setSpeed(speed));
        EXPECT_THAT(run(sequence), ElementsAre("step 0 0", "step 1 200000", "input 1 closed 323456 in 1",
                                               "step 2 323456", "step 3 323456", "input 1 open 343456 in 3",
                                               "step 4 343456", "finished complete 180343456"));
    }
}

TEST_F(SimulatedKestoTest, SpeedChangesWithoutAJumpOfTime)
{
    // At this speed a ramp is far behind the clock; then the clock all but stands still.
    OutputStep step{amperes(1.0), 24h};
    step.ramp.currents[0].degrees = 1.0;
    start();
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(device->setSpeed(1e6));
        ASSERT_TRUE(link->runSequence({step}));
        DeviceTime before{0}, after{0};
        ASSERT_TRUE(link->readTime(before));
        ASSERT_TRUE(device->setSpeed(1e-6));
        ASSERT_TRUE(link->readTime(after));
        EXPECT_GE(after, before);
        before = after;
        for (int call = 0; call < 100; ++call) {
            ASSERT_TRUE(link->readTime(after));
            std::this_thread::yield();
        }
        EXPECT_GE(after, before);
        EXPECT_LE(after, before + 1ms);
        ASSERT_TRUE(link->stopOutputs());
        const auto realBefore = std::chrono::steady_clock::now();
        ASSERT_TRUE(device->setSpeed(1e6));
        ASSERT_TRUE(link->readTime(after));
        const std::chrono::duration<double> real = std::chrono::steady_clock::now() - realBefore;
        EXPECT_LE(std::chrono::duration<double>(after - before).count(), real.count() * 1e6 + 1.0);
    }
    EXPECT_FALSE(device->setSpeed(0.0));
    EXPECT_FALSE(device->setSpeed(1e7));
}

TEST_F(SimulatedKestoTest, OutputsGoOffThoughTheReceiverIsBusy)
{
    std::promise<void> isOff;
    receiver->onLine([&](const std::string& line) {
        if (line.starts_with("step"))
            isOff.get_future().wait();
    });
    device->setTimeout(200ms);
    start();
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h}}));
    device->setSilent(true);
    EXPECT_TRUE(isSoonOff());
    isOff.set_value();
    EXPECT_TRUE(receiver->waitFor("lost"));
    link.reset();
}

TEST_F(SimulatedKestoTest, TestObjectBeginsAnewWithTheWorkingMode)
{
    start();
    device->setSpeed(1000.0);
    ASSERT_TRUE(link->setOutputs(amperes(12.0)));
    ASSERT_TRUE(receiver->waitFor("input 1 closed"));
    // By itself the contact would not open any more.
    device->setSpeed(1e-6);
    EXPECT_TRUE(link->stopWorkingMode() && link->startWorkingMode());
    EXPECT_TRUE(receiver->waitFor("input 1 open"));
}

/// A contact that changes without end at one moment, and may fail once.
struct Buzzer : ISimulatedTestObject {
    void reset(DeviceTime) override {}
    void applyOutputs(const OutputState&, DeviceTime) override {}
    std::optional<InputEvent> getNextChange() const override
    {
        if (isFailing.exchange(false))
            throw std::bad_alloc();
        return InputEvent{99, true, DeviceTime(0)};
    }
    void acceptChange() override {}

    mutable std::atomic<bool> isFailing{false};
};

TEST_F(SimulatedKestoTest, RestlessContactLeavesTheDeviceUsableAndABrokenOneCostsTheConnection)
{
    const auto buzzer = std::make_shared<Buzzer>();
    ASSERT_TRUE(device->connectTestObject(buzzer));
    start();
    EXPECT_TRUE(link->setOutputs(amperes(1.0)));
    EXPECT_TRUE(link->stopOutputs());
    EXPECT_TRUE(link->setOutputs(amperes(1.0)));
    EXPECT_TRUE(receiver->getLines().empty());
    buzzer->isFailing = true;
    EXPECT_TRUE(receiver->waitFor("lost"));
    EXPECT_TRUE(isSoonOff());
}

} // namespace
