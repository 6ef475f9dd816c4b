// Runs whose devices, slots or hooks fail at the worst moment: the run ends in order, its outputs are off,
// and the user is told once.

#include "RunFaults.h"

namespace KesTest {

namespace {

using namespace std::chrono_literals;
using KesDevice::HardwareControl;
using KesDevice::HardwareManager;
using testing::ElementsAre;
using testing::HasSubstr;

// Faults of devices while a run begins

class FaultAtTheStart : public RunFaults {
protected:
    /// The fault comes when the first device is on and the second has not answered yet.
    void expectOneTextWhen(const std::function<void()>& fail)
    {
        second.addTo(hardware());
        second->setAnswerDelay(100ms);
        start();
        ASSERT_TRUE(waitFor([this] { return first->isWorking(); }));
        fail();
        EXPECT_TRUE(waitForFinish()) << "nothing stops the run";
        first->clearFaults();
        EXPECT_FALSE(hardware().isOutputRunning());
        EXPECT_THAT(texts.take(), testing::SizeIs(1));
    }
};

TEST_F(FaultAtTheStart, ALostDeviceEndsTheRunWithOneText)
{
    expectOneTextWhen([this] { first->simulateConnectionLoss(); });
}

TEST_F(FaultAtTheStart, AnOverloadEndsTheRunWithOneText)
{
    expectOneTextWhen([this] { first->simulateOverload(0); });
}

TEST_F(FaultAtTheStart, AFaultBetweenThePreparationAndTheRunStopsTheRun)
{
    model.prepareHardware = [this] {
        const bool isPrepared = model.prepareRealHardware();
        first->simulateOverload(0);
        while (texts.count("Fault KESTO-3 No. 00001\nIA - Overload") == 0)
            std::this_thread::yield();
        return isPrepared;
    };
    start();
    EXPECT_TRUE(waitForFinish()) << "nothing stops the run";
    first->clearFaults();
    EXPECT_THAT(texts.take(), testing::SizeIs(1));
}

TEST_F(FaultAtTheStart, ALossBetweenTheTwoStepsOfThePreparationGivesOneText)
{
    hardware().setIsStatusReported(true);
    Kes::ScopedConnection ended = hardware().signalStatusChanged.connect([&](const char* text) {
        if (*text || !first.isReached() || first->isWorking())
            return;
        ended.disconnect();
        first->simulateConnectionLoss();
        const Kes::SignalGate::Release gate;
        std::this_thread::sleep_for(100ms);
    });
    start();
    EXPECT_TRUE(waitForFinish());
    EXPECT_THAT(texts.take(), ElementsAre(HasSubstr("10.0.7.1")));
}

using FaultInARun = RunFaults;

TEST_F(FaultInARun, NonsenseStopsTheRunWithOneText)
{
    startAndRun();
    first->setNonsense(true);
    EXPECT_TRUE(waitForFinish()) << "nothing stops the run";
    first->setNonsense(false);
    EXPECT_FALSE(first.isPuttingOut());
    EXPECT_THAT(texts.take(), testing::ElementsAre(testing::HasSubstr("10.0.7.1")));
}

class SilenceAtTheStart : public RunFaults {
protected:
    SilenceAtTheStart() { first->setTimeout(200ms); }

    void expectOneTextWithTheAddress()
    {
        ASSERT_TRUE(waitForFinish());
        EXPECT_THAT(texts.take(), ElementsAre(HasSubstr(first.getAddress())));
        EXPECT_TRUE(model.has("finished(false)"));
    }
};

TEST_F(SilenceAtTheStart, OfAConnectedDeviceGivesOneText)
{
    ASSERT_TRUE(hardware().prepare());
    first->setSilent(true);
    start();
    expectOneTextWithTheAddress();
}

TEST_F(SilenceAtTheStart, OfADeviceNeverHeardOfGivesOneText)
{
    first->setSilent(true);
    start();
    expectOneTextWithTheAddress();
}

TEST_F(SilenceAtTheStart, BeforeTheIdentificationGivesOneText)
{
    first->setAnswerDelay(50ms);
    start();
    ASSERT_TRUE(waitFor([this] { return first.isReached(); }));
    first->setSilent(true);
    expectOneTextWithTheAddress();
}

// The GUI thread

class GuiThreadKeepsTurning : public RunFaults {
protected:
    GuiThreadKeepsTurning() { first->setTimeout(1500ms); }

    /// Until the silent device is off and nobody waits for it any more.
    void expectTurns(const std::function<void()>& action)
    {
        const auto before = HardwareControl::share();
        auto last = std::chrono::steady_clock::now();
        std::chrono::steady_clock::duration longest{0};
        action();
        // Asked in each turn of the main loop.
        EXPECT_TRUE(waitFor([&] {
            const auto now = std::chrono::steady_clock::now();
            longest = std::max(longest, now - std::exchange(last, now));
            return !before->isBusy() && !first.isReached() && !first.isPuttingOut();
        }));
        // A wait for the device would take its time-out.
        EXPECT_LT(longest, 1400ms);
    }
};

TEST_F(GuiThreadKeepsTurning, WhenASilentRunningDeviceIsDisconnected)
{
    switchOn();
    first->setSilent(true);
    expectTurns([this] { model.beginDisconnect(); });
}

TEST_F(GuiThreadKeepsTurning, WhenARunWithASilentDeviceIsDisconnected)
{
    startAndRun();
    first->setSilent(true);
    expectTurns([this] { model.beginDisconnect(); });
}

TEST_F(GuiThreadKeepsTurning, WhenASilentRunningConfigurationIsReplaced)
{
    switchOn();
    first->setSilent(true);
    auto next = HardwareManager::create();
    expectTurns([&] { model.setHardware(next, true); });
}

} // namespace
} // namespace KesTest
