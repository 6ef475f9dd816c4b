// Runs whose devices, slots or hooks fail at the worst moment: the run ends in order, its outputs are off,
// and the user is told once.

#include "RunFaults.h"

namespace {

using namespace KesTest;
using KesDevice::HardwareControl;
using KesDevice::HardwareManager;
using testing::ElementsAre;
using testing::HasSubstr;

// Faults of devices while a run begins

/// Of a device that is on, when the second one has not answered yet: it is lost, or has an overload.
class FaultAtTheStart : public RunFaults, public testing::WithParamInterface<bool> {};

INSTANTIATE_TEST_SUITE_P(Kinds, FaultAtTheStart, testing::Bool());

TEST_P(FaultAtTheStart, EndsTheRunWithOneText)
{
    second.addTo(hardware());
    second->setAnswerDelay(100ms);
    start();
    ASSERT_TRUE(waitFor([this] { return first->isWorking(); }));
    GetParam() ? first->simulateConnectionLoss() : first->simulateOverload(0);
    EXPECT_TRUE(waitForFinish()) << "nothing stops the run";
    first->clearFaults();
    EXPECT_FALSE(hardware().isOutputRunning());
    EXPECT_THAT(texts.take(), testing::SizeIs(1));
}

using FaultInARun = RunFaults;

TEST_F(FaultInARun, AFaultBetweenThePreparationAndTheRunStopsTheRun)
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

TEST_F(FaultInARun, ALossBetweenTheTwoStepsOfThePreparationGivesOneText)
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

TEST_F(FaultInARun, NonsenseStopsTheRunWithOneText)
{
    startAndRun();
    first->setNonsense(true);
    EXPECT_TRUE(waitForFinish()) << "nothing stops the run";
    first->setNonsense(false);
    EXPECT_FALSE(first.isPuttingOut());
    EXPECT_THAT(texts.take(), ElementsAre(HasSubstr("10.0.7.1")));
}

enum class Known { Connected, NeverHeardOf, BeforeItsIdentification };

class SilenceAtTheStart : public RunFaults, public testing::WithParamInterface<Known> {};

INSTANTIATE_TEST_SUITE_P(OfADevice, SilenceAtTheStart,
                         testing::Values(Known::Connected, Known::NeverHeardOf,
                                         Known::BeforeItsIdentification));

TEST_P(SilenceAtTheStart, GivesOneTextWithTheAddress)
{
    first->setTimeout(200ms);
    if (GetParam() == Known::Connected) {
        ASSERT_TRUE(hardware().prepare());
    }
    const bool isSilentLater = GetParam() == Known::BeforeItsIdentification;
    first->setAnswerDelay(isSilentLater ? 50ms : 0ms);
    first->setSilent(!isSilentLater);
    start();
    ASSERT_TRUE(waitFor([&] { return first.isReached() || !isSilentLater; }));
    first->setSilent(true);
    ASSERT_TRUE(waitForFinish());
    EXPECT_THAT(texts.take(), ElementsAre(HasSubstr(first.getAddress())));
    EXPECT_TRUE(model.has("finished(false)"));
}

// The GUI thread

enum class End { OfOutputs, OfARun, OfTheConfiguration, OfOneOfItsOwnInARun };

class GuiThreadKeepsTurning : public RunFaults, public testing::WithParamInterface<End> {};

INSTANTIATE_TEST_SUITE_P(Ends, GuiThreadKeepsTurning,
                         testing::Values(End::OfOutputs, End::OfARun, End::OfTheConfiguration,
                                         End::OfOneOfItsOwnInARun));

/// Until the silent device is off and nobody waits for it any more.
TEST_P(GuiThreadKeepsTurning, WhenASilentDeviceIsGivenUp)
{
    first->setTimeout(1500ms);
    model.isLocal = GetParam() == End::OfOneOfItsOwnInARun;
    if (model.isLocal)
        first.addTo(hardware());
    model.isLocal || GetParam() == End::OfARun ? startAndRun() : switchOn();
    first->setSilent(true);
    const auto before = HardwareControl::share();
    auto last = std::chrono::steady_clock::now();
    std::chrono::steady_clock::duration longest{0};
    auto next = HardwareManager::create();
    GetParam() < End::OfTheConfiguration ? model.beginDisconnect() : model.setHardware(next, true);
    // Asked in each turn of the main loop.
    EXPECT_TRUE(waitFor([&] {
        const auto now = std::chrono::steady_clock::now();
        longest = std::max(longest, now - std::exchange(last, now));
        return !before->isBusy() && !first.isReached() && !first.isPuttingOut();
    }));
    // A wait for the device would take its time-out.
    EXPECT_LT(longest, 1400ms);
}

} // namespace
