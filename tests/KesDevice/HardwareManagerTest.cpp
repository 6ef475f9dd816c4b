#include "TestBench.h"

#include <support/Record.h>

#include <KesDevice/HardwareIsRunningComponent.h>

using namespace KesTest;

namespace {

class HardwareManagerTest : public testing::Test {
protected:
    HardwareManagerTest()
    {
        hardware->signalRunningChanged.connect([this](bool isRunning) { running.push_back(isRunning); });
        hardware->signalKestoState.connect([this](Kesto* kesto, const char* text) {
            notices.write((kesto == secondKesto ? "second: " : "?: ") + std::string(text));
        });
    }

    void start()
    {
        ASSERT_TRUE(hardware->prepare());
        ASSERT_TRUE(hardware->startWorkingMode());
    }

    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
    FakeKesto first;
    FakeKesto second;
    Kesto* firstKesto = add(*hardware, first, 1);
    Kesto* secondKesto = add(*hardware, second, 2);
    std::vector<bool> running;
    Record notices;
};

TEST_F(HardwareManagerTest, RunsFromPreparingToDisconnecting)
{
    const Kes::ScopedConnection throwing =
        hardware->signalRunningChanged.connect([](bool) { throw std::runtime_error("thrown by a slot"); });
    start();
    EXPECT_TRUE(first.isWorking() && second.isWorking());
    EXPECT_TRUE(hardware->isOutputRunning() && hardware->isBusy());
    ASSERT_TRUE(hardware->stopWorkingMode());
    EXPECT_FALSE(first.isWorking() || second.isWorking());
    ASSERT_TRUE(hardware->startWorkingMode());
    ASSERT_TRUE(hardware->disconnect());
    EXPECT_FALSE(first.isConnected() || second.isConnected());

    EXPECT_THAT(running, ElementsAre(true, false, true, false));
    EXPECT_EQ(notices.count("?: thrown by a slot"), 4U);
}

/// It is found out when the device is asked.
TEST_F(HardwareManagerTest, ADeviceThatWasOffMeanwhileIsConnectedAgain)
{
    ASSERT_TRUE(hardware->prepare());
    first.dropIn(LinkCall::ReadState);
    EXPECT_EQ(message(hardware->prepare()), "");
    EXPECT_TRUE(first.isConnected());
    EXPECT_EQ(first.countCalls(LinkCall::Connect), 2U);
    EXPECT_EQ(second.countCalls(LinkCall::Connect), 1U);
}

/// Who looks at a run that is being stopped must not find a fault.
TEST_F(HardwareManagerTest, SwitchingOffWaitsForNoOtherDeviceAndIsNoFailure)
{
    start();
    first.hold(LinkCall::StopWorkingMode);
    auto stopping = std::async(std::launch::async, [this] { return hardware->stopWorkingMode(); });
    ASSERT_TRUE(waitUntil([this] { return secondKesto->getState() == DeviceState::Ready; }));
    EXPECT_TRUE(hardware->isBusy());
    EXPECT_EQ(message(hardware->checkOutput()), "");
    first.report(KesDriver::KesAvary{3, 17, false, false, {{"IA", false, false, true}}}).wait();
    EXPECT_THAT(message(hardware->checkOutput()), testing::HasSubstr("Fault: IA - overload"));
    first.release(LinkCall::StopWorkingMode);
    EXPECT_TRUE(stopping.get());
    EXPECT_TRUE(hardware->checkOutput());
}

TEST_F(HardwareManagerTest, FailuresNameEveryDeviceAndLeaveNothingOn)
{
    second.fail(LinkCall::ReadState, "broken");
    first.fail(LinkCall::Connect, "KESTO 192.168.1.1 does not answer.");
    EXPECT_EQ(message(hardware->prepare()), "Error on connecting to the devices.\n"
                                            "  KESTO 192.168.1.1 does not answer.\n"
                                            "  KESTO-3 No. 00017 (192.168.1.2): broken");
    first.fail(LinkCall::Connect, "");
    second.fail(LinkCall::ReadState, "");
    ASSERT_TRUE(hardware->prepare());
    second.fail(LinkCall::StartWorkingMode, "Fault: IA - overload");
    EXPECT_EQ(message(hardware->startWorkingMode()),
              "Error on starting working mode.\n  KESTO-3 No. 00017 (192.168.1.2): Fault: IA - overload");
    EXPECT_FALSE(first.isWorking() || hardware->isOutputRunning());
    second.fail(LinkCall::StartWorkingMode, "");
    ASSERT_TRUE(hardware->startWorkingMode());
    first.fail(LinkCall::StopWorkingMode, "stuck");
    EXPECT_EQ(message(hardware->disconnect()),
              "Error on stopping working mode.\n  KESTO-3 No. 00017 (192.168.1.1): stuck");
    EXPECT_FALSE(hardware->isOutputRunning() || first.isConnected() || second.isWorking());
    ASSERT_TRUE(hardware->prepare());
    second.fail(LinkCall::StartWorkingMode, "Fault: IA - overload");
    EXPECT_EQ(message(hardware->startWorkingMode()),
              "Error on starting working mode.\n"
              "  KESTO-3 No. 00017 (192.168.1.1): stuck\n"
              "  KESTO-3 No. 00017 (192.168.1.2): Fault: IA - overload");
    EXPECT_THAT(notices.take(), testing::IsEmpty()) << "one cause, one text";
}

TEST_F(HardwareManagerTest, AFaultStopsTheOthersWhenWanted)
{
    start();
    first.report(KesDriver::KesAvary{3, 17, false, true, {}}).wait();
    EXPECT_EQ(second.countCalls(LinkCall::StopOutputs), 0U);
    hardware->setIsStopOnFault(true);
    second.fail(LinkCall::StopOutputs, "stuck");
    first.reportConnectionLost().wait();
    const std::string disobedience = "KESTO-3 No. 00017 (192.168.1.2) does not obey, and was disconnected.";
    EXPECT_TRUE(waitUntil([&] { return notices.has("second: " + disobedience); }));
    EXPECT_EQ(secondKesto->getOperationError(), disobedience);
    EXPECT_FALSE(second.isConnected());
    EXPECT_EQ(second.countCalls(LinkCall::StopOutputs), 1U);
    EXPECT_TRUE(hardware->isOutputRunning()) << "until it is stopped";
    EXPECT_TRUE(hardware->stopWorkingMode()) << "a lost device has switched off by itself";
    EXPECT_THAT(notices.take(), ElementsAre("second: " + disobedience));
}

TEST_F(HardwareManagerTest, AFaultStopsEveryOtherDeviceBeforeItIsTold)
{
    FakeKesto third;
    add(*hardware, third, 3);
    hardware->setIsStopOnFault(true);
    std::atomic<bool> isAwaited{false};
    std::size_t stops = 0;
    const auto look = [&](const auto&...) {
        if (!isAwaited.exchange(false))
            return;
        EXPECT_TRUE(second.waitForCall(LinkCall::StopOutputs, stops));
        EXPECT_TRUE(third.waitForCall(LinkCall::StopOutputs, stops));
    };
    firstKesto->signalOperationErrorChanged.connect(look);
    hardware->signalAvary.connect(look);
    const KesDriver::KesAvary quick{3, 17, false, true, {}};
    const KesDriver::StepEvent impossible{99, 1us};
    const std::pair<const char*, std::function<void()>> causes[] = {
        {"fault", [&] { first.report(quick).wait(); }},
        {"loss", [&] { first.reportConnectionLost().wait(); }},
        {"nonsense", [&] { first.report(impossible).wait(); }},
        {"state",
         [&] {
             first.setState({false, false, 0.0, "hot"});
             (void)firstKesto->updateState();
         }},
    };
    for (const auto& [name, fail] : causes) {
        SCOPED_TRACE(name);
        first.setState({true, false, 0.0, ""});
        start();
        ++stops;
        isAwaited = true;
        fail();
        EXPECT_FALSE(isAwaited) << "not told";
        (void)hardware->disconnect();
    }
}

TEST_F(HardwareManagerTest, OperationsTakeTurnsAndSlotsMayCallThem)
{
    first.hold(LinkCall::Connect);
    std::thread preparing(
        [&] { EXPECT_THAT(message(hardware->prepare()), testing::HasSubstr("has been disconnected")); });
    ASSERT_TRUE(first.waitForCall(LinkCall::Connect));
    std::thread disconnecting([&] {
        // As a slot would: with the gate held, which the preparing thread needs before it can end.
        Kes::SignalGate::Guard gate;
        EXPECT_TRUE(hardware->disconnect());
    });
    preparing.join();
    disconnecting.join();
    first.release(LinkCall::Connect);
    EXPECT_FALSE(first.isConnected());

    ASSERT_TRUE(hardware->prepare());
    hardware->signalRunningChanged.connect([this](bool) { EXPECT_TRUE(hardware->stopWorkingMode()); });
    EXPECT_TRUE(hardware->startWorkingMode());
    EXPECT_FALSE(hardware->isOutputRunning());
    // A slot on one of the threads that ask the devices works for the operation that waits for it.
    firstKesto->signalOperationErrorChanged.connect(
        [this](const Kes::Nullable<std::string>&) { EXPECT_TRUE(hardware->stopWorkingMode()); });
    first.setState({false, false, 0.0, "not ready"});
    EXPECT_TRUE(hardware->prepare());
}

class HardwareStatusTest : public HardwareManagerTest {
protected:
    HardwareStatusTest()
    {
        hardware->signalStatusChanged.connect([this](const char* text) { statuses.write(text); });
    }

    static constexpr const char* disconnecting = "Disconnecting from the devices";
    static constexpr const char* stopping = "Switching off the outputs";
    Record statuses;
};

TEST_F(HardwareStatusTest, TellsEveryStepWhenWanted)
{
    hardware->setIsStatusReported(true);
    start();
    ASSERT_TRUE(hardware->disconnect());
    EXPECT_THAT(statuses.take(),
                ElementsAre("Connecting to KESTO 192.168.1.1, 192.168.1.2", "", "Switching on the outputs",
                            "", disconnecting, stopping, disconnecting, ""));
}

TEST_F(HardwareStatusTest, OtherwiseTellsDisconnectingAndWhatTakesLong)
{
    ASSERT_TRUE(hardware->disconnect()) << "from nothing";
    start();
    EXPECT_THAT(statuses.take(), testing::IsEmpty());
    second.hold(LinkCall::StopWorkingMode);
    auto ending = std::async(std::launch::async, [this] { return hardware->disconnect(); });
    EXPECT_TRUE(waitUntil([this] { return statuses.has(stopping); }));
    second.release(LinkCall::StopWorkingMode);
    EXPECT_TRUE(ending.get());
    EXPECT_THAT(statuses.take(), ElementsAre(disconnecting, stopping, disconnecting, ""));
}

TEST_F(HardwareStatusTest, TellsDisconnectingWhileAnotherOperationIsStillEnding)
{
    start();
    second.hold(LinkCall::StopWorkingMode);
    auto stop = std::async(std::launch::async, [this] { return hardware->stopWorkingMode(); });
    ASSERT_TRUE(second.waitForCall(LinkCall::StopWorkingMode));
    auto ending = std::async(std::launch::async, [this] { return hardware->disconnect(); });
    EXPECT_TRUE(waitUntil([this] { return statuses.has(disconnecting); }));
    second.release(LinkCall::StopWorkingMode);
    EXPECT_TRUE(stop.get() && ending.get());
    const auto told = statuses.take();
    EXPECT_EQ(std::ranges::count(told, ""), 1) << "at the end of both";
    EXPECT_EQ(told.back(), "");
}

TEST_F(HardwareStatusTest, AReplacedConfigurationLeavesNoTextBehind)
{
    ASSERT_TRUE(hardware->prepare());
    second.hold(LinkCall::StartWorkingMode);
    auto starting = std::async(std::launch::async, [this] { return hardware->startWorkingMode(); });
    ASSERT_TRUE(waitUntil([this] { return statuses.has("Switching on the outputs"); }));
    hardware->refuse();
    EXPECT_THAT(statuses.take(), ElementsAre("Switching on the outputs", ""));
    second.release(LinkCall::StartWorkingMode);
    EXPECT_FALSE(starting.get());
    hardware->retire();
    EXPECT_THAT(statuses.take(), testing::IsEmpty()) << "nobody would hear its end";
}

TEST_F(HardwareManagerTest, ADeviceIsConnectedAsSoonAsAnotherConfigurationIsDoneWithIt)
{
    const auto other = HardwareManager::create();
    FakeKesto same;
    auto* const kesto = add(*other, same, 1);
    first.hold(LinkCall::ReadState);
    const auto holding = std::async(std::launch::async, [&] { (void)firstKesto->connect(); });
    ASSERT_TRUE(first.waitForCall(LinkCall::ReadState));
    const auto begin = [&] { return std::async(std::launch::async, [&] { (void)kesto->connect(); }); };
    const auto givenUp = begin();
    EXPECT_EQ(givenUp.wait_for(100ms), std::future_status::timeout);
    kesto->disconnect();
    EXPECT_EQ(givenUp.wait_for(2s), std::future_status::ready) << "nobody wants it any more";
    const auto waiting = begin();
    EXPECT_EQ(waiting.wait_for(100ms), std::future_status::timeout);
    first.release(LinkCall::ReadState);
    EXPECT_EQ(waiting.wait_for(2s), std::future_status::ready) << "only after the longest wait";
    EXPECT_TRUE(same.isConnected());
}

TEST_F(HardwareManagerTest, ADeviceThatLeavesIsDisconnectedThoughSomebodyStillUsesIt)
{
    ASSERT_TRUE(hardware->prepare());
    const auto used = secondKesto->shared_from_this();
    ASSERT_TRUE(hardware->getKestos().remove(secondKesto));
    EXPECT_FALSE(second.isConnected() || used->connect());
    ASSERT_TRUE(add(*hardware, second, 2)) << "its address is free";
    EXPECT_TRUE(hardware->prepare());
}

TEST_F(HardwareManagerTest, ADestroyedRunningConfigurationSwitchesOff)
{
    start();
    EXPECT_TRUE(HardwareIsRunningComponent::getInstance().isRunning());
    hardware.reset();
    EXPECT_FALSE(HardwareIsRunningComponent::getInstance().isRunning());
    EXPECT_FALSE(first.isWorking() || second.isConnected());
}

} // namespace
