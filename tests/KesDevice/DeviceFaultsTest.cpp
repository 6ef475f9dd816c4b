// Faults of devices at the worst moment: the configuration and its devices are what they say they are.

#include <support/Bench.h>
#include <support/DefaultHardware.h>
#include <support/MainLoop.h>
#include <support/Message.h>
#include <support/Record.h>
#include <support/ThreadCount.h>

#include <KesDevice/HardwareControl.h>
#include <KesDevice/KestoStateGlobalUpdater.h>

#include <gmock/gmock.h>

#include <future>
#include <random>
#include <stdexcept>

using namespace KesDevice;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

namespace {

class DeviceFaultsTest : public testing::Test {
protected:
    void listenTo(HardwareManager& configuration)
    {
        configuration.signalAvary.connect([this](KesDriver::KesAvary&) { record.write("fault"); });
        configuration.signalKestoState.connect([this](Kesto*, const char* text) { record.write(text); });
    }
    void spin(std::chrono::microseconds longest)
    {
        const auto end =
            std::chrono::steady_clock::now() + longest * std::uniform_real_distribution<>(0.0, 1.0)(random);
        while (std::chrono::steady_clock::now() < end) {
        }
    }

    Record record;
    std::mt19937 random{7};
    BenchDevice first{1};
    BenchDevice second{2};
    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
};

// A fault while another device is still being switched on

class FaultDuringStart : public DeviceFaultsTest {
protected:
    /// The fault comes when the first device is on and the second has not answered yet.
    void startWith(const std::function<void()>& fail)
    {
        first.addTo(*hardware);
        second.addTo(*hardware);
        ASSERT_TRUE(hardware->prepare());
        second->setAnswerDelay(150ms);
        auto starting = std::async(std::launch::async, [this] { return hardware->startWorkingMode(); });
        ASSERT_TRUE(waitFor([this] { return first->isWorking(); }));
        fail();
        EXPECT_THAT(message(starting.get()), HasSubstr("Error on starting working mode"));
        EXPECT_FALSE(hardware->isOutputRunning());
    }
};

TEST_F(FaultDuringStart, ALostDeviceLetsTheStartFail)
{
    startWith([this] { first->simulateConnectionLoss(); });
}

TEST_F(FaultDuringStart, AnOverloadLetsTheStartFail)
{
    startWith([this] { first->simulateOverload(0); });
}

// A start beside another attempt to connect

class StartBesideAnAttempt : public DeviceFaultsTest {
protected:
    /// With the other attempt under way, whose every step takes a while.
    void expectWholeConnection(HardwareManager& configuration)
    {
        ASSERT_TRUE(waitFor([this] { return first.isReached(); }));
        ASSERT_TRUE(configuration.prepare());
        EXPECT_EQ(first.getName(), "KESTO-3 No. 00001 (10.0.7.1)");
        ASSERT_TRUE(configuration.startWorkingMode());
        EXPECT_TRUE(first.isSupplyOn()) << "the outputs are on before it";
    }
};

TEST_F(StartBesideAnAttempt, UsesAWholeConnectionBesideAnotherThread)
{
    first.addTo(*hardware);
    first.setSupply(110.0);
    first->setAnswerDelay(50ms);
    auto asking = std::async(std::launch::async, [this] { return first.askState(); });
    expectWholeConnection(*hardware);
    EXPECT_TRUE(asking.get());
    EXPECT_TRUE(first.isSupplyOn()) << "at last";
}

TEST_F(StartBesideAnAttempt, UsesAWholeConnectionBesideTheStateUpdater)
{
    first.addTo(*hardware);
    first.setSupply(110.0);
    first->setAnswerDelay(50ms);
    const DefaultHardware defaultHardware;
    HardwareControl::setGlobalInstance(std::move(hardware), true);
    auto& updater = KestoStateGlobalUpdater::getInstance();
    updater.setUpdating(true);
    expectWholeConnection(*HardwareControl::getInstance());
    updater.setUpdating(false);
    EXPECT_TRUE(first.isSupplyOn()) << "at last";
}

TEST_F(StartBesideAnAttempt, IsNotCutInSilenceWhenTheAttemptFails)
{
    first.addTo(*hardware);
    listenTo(*hardware);
    first->setAnswerDelay(300ms);
    auto asking = std::async(std::launch::async, [this] { return first.askState(); });
    ASSERT_TRUE(waitFor([this] { return first.isReached(); }));
    first->setAnswerDelay(0ms);
    ASSERT_TRUE(hardware->prepare());
    ASSERT_TRUE(hardware->startWorkingMode());
    ASSERT_TRUE(first.putOut(1.0));
    // What the attempt is told next makes no sense; nothing else is told.
    first->setSilent(true);
    first->setNonsense(true);
    first->setSilent(false);
    (void)asking.get();
    first->setNonsense(false);
    EXPECT_TRUE(waitFor([this] { return first.isPuttingOut() || record.has("fault"); }, 1s));
}

// Devices that are not heard of in time

TEST_F(DeviceFaultsTest, OutputsOfSilentAndLateDevicesAreOffWithinThreeSeconds)
{
    first.addTo(*hardware);
    second.addTo(*hardware);
    ASSERT_TRUE(hardware->prepare());
    ASSERT_TRUE(hardware->startWorkingMode());
    ASSERT_TRUE(first.putOut(1.0) && second.putOut(1.0));
    const auto releaseTime = hardware->getKestos().getItems()[0]->getLimits().releaseTime;
    const auto begin = std::chrono::steady_clock::now();
    first->setSilent(true);
    second->setAnswerDelay(3s);
    (void)second.putOut(2.0);
    ASSERT_TRUE(waitFor([this] { return !first.isPuttingOut() && !second.isPuttingOut(); }, 10s));
    // As late as a device may do it that is not simulated.
    EXPECT_LT(std::chrono::steady_clock::now() - begin + releaseTime, 2900ms);
}

// Signals and threads

TEST_F(DeviceFaultsTest, DisconnectingWaitsForASlotThatIsInsideAnOperation)
{
    first.addTo(*hardware);
    second.addTo(*hardware);
    ASSERT_TRUE(hardware->prepare());
    ASSERT_TRUE(hardware->startWorkingMode());
    first->setAnswerDelay(200ms);
    std::atomic<bool> isInside{false};
    std::atomic<bool> hasReturned{false};
    Kes::Signal<void()> signal;
    auto connection = signal.connect([&] {
        isInside = true;
        EXPECT_TRUE(hardware->stopWorkingMode());
        hasReturned = true;
    });
    auto emitting = std::async(std::launch::async, [&] { signal.emit(); });
    ASSERT_TRUE(waitFor([&] { return isInside.load(); }));
    connection.disconnect();
    EXPECT_TRUE(hasReturned);
    emitting.get();
}

TEST_F(DeviceFaultsTest, AThrowingSlotLeavesNoOutputsOnBehindItsException)
{
    first.addTo(*hardware);
    ASSERT_TRUE(hardware->prepare());
    hardware->signalRunningChanged.connect([](bool) { throw std::runtime_error("thrown by a slot"); });
    Kes::Result result = false;
    EXPECT_NO_THROW(result = hardware->startWorkingMode());
    EXPECT_EQ(hardware->isOutputRunning(), static_cast<bool>(result));
}

TEST_F(DeviceFaultsTest, ARepeatedFaultMakesNoNewThreads)
{
    BenchDevice third{3};
    for (auto* device : {&first, &second, &third})
        device->addTo(*hardware);
    hardware->setIsStopOnFault(true);
    listenTo(*hardware);
    ASSERT_TRUE(hardware->prepare());
    ASSERT_TRUE(hardware->startWorkingMode());
    second->setAnswerDelay(500ms);
    third->setAnswerDelay(500ms);
    const int before = countThreads();
    int most = before;
    first->setFaultRepeatInterval(2ms);
    first->simulateOverload(0);
    waitFor(
        [&] {
            most = std::max(most, countThreads());
            return record.count("fault") >= 100;
        },
        400ms);
    first->clearFaults();
    EXPECT_LE(most, before + 4);
    hardware.reset();
}

// Races

TEST_F(DeviceFaultsTest, AHealthyDeviceWhoseAnswerIsLateIsNotAccusedOfNonsense)
{
    first.addTo(*hardware);
    listenTo(*hardware);
    first->setTimeout(150ms);
    KesDriver::OutputStep passed{{}, 1ms, KesDriver::InputCondition{1, false}}; // Open already.
    const KesDriver::OutputSequence sequence{passed, passed, {{}, 1h, {}}};
    for (int round = 0; round < 10; ++round) {
        ASSERT_TRUE(hardware->prepare());
        ASSERT_TRUE(hardware->startWorkingMode());
        // The first step is being told while the call gives up.
        std::promise<void> isGivenUp;
        Kes::ScopedConnection connection =
            first.onStep([givenUp = isGivenUp.get_future().share()](const KesDriver::StepEvent& event) {
                if (event.step == 0)
                    givenUp.wait_for(450ms);
            });
        first->setAnswerDelay(300ms);
        EXPECT_FALSE(first.runSequence(sequence));
        isGivenUp.set_value();
        first->setAnswerDelay(0ms);
        EXPECT_TRUE(waitFor([this] { return record.has("fault"); })) << "its connection is lost";
        ASSERT_THAT(record.take(), Each(Not(HasSubstr("make no sense")))) << "round " << round;
        EXPECT_TRUE(hardware->stopWorkingMode());
    }
}

TEST_F(DeviceFaultsTest, ADeviceThatIsOffAlreadyIsNotSaidToBeOn)
{
    first.addTo(*hardware);
    second.addTo(*hardware);
    hardware->setIsStopOnFault(true);
    listenTo(*hardware);
    for (int round = 0; round < 300; ++round) {
        ASSERT_TRUE(hardware->prepare());
        ASSERT_TRUE(hardware->startWorkingMode());
        first->simulateConnectionLoss();
        spin(200us);
        second->simulateConnectionLoss();
        ASSERT_TRUE(waitFor([this] { return record.has("fault"); }));
        EXPECT_TRUE(hardware->stopWorkingMode());
        ASSERT_THAT(record.take(), Each(Not(HasSubstr("could not be switched off")))) << "round " << round;
    }
}

} // namespace
