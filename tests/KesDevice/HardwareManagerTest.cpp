#include "TestBench.h"

#include <KesCommon/Language.h>
#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/HardwareManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <vector>

using namespace KesDevice;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class HardwareManagerTest : public testing::Test {
protected:
    HardwareManagerTest()
    {
        hardware->setIsStatusReported(true);
        hardware->signalStatusChanged.connect([this](const char* text) { statuses.emplace_back(text); });
        hardware->signalRunningChanged.connect([this](bool isRunning) { running.push_back(isRunning); });
    }

    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
    FakeKesto first;
    FakeKesto second;
    Kesto* firstKesto = add(*hardware, first, 1);
    Kesto* secondKesto = add(*hardware, second, 2);
    std::vector<std::string> statuses;
    std::vector<bool> running;
};

TEST_F(HardwareManagerTest, RunsFromPreparingToDisconnecting)
{
    auto& anyRunning = HardwareIsRunningComponent::getInstance();
    std::vector<bool> any;
    Kes::ScopedConnection connection =
        anyRunning.signalRunningChanged.connect([&](bool is) { any.push_back(is); });

    ASSERT_TRUE(hardware->prepare());
    EXPECT_TRUE(firstKesto->isConnected() && secondKesto->isConnected());
    EXPECT_FALSE(hardware->isBusy());
    ASSERT_TRUE(hardware->startWorkingMode());
    EXPECT_TRUE(first.isWorking() && second.isWorking());
    EXPECT_TRUE(hardware->isOutputRunning() && anyRunning.isRunning() && hardware->isBusy());
    EXPECT_EQ(message(hardware->startWorkingMode()),
              "Error on starting working mode.\n  The outputs are already switched on.");
    ASSERT_TRUE(hardware->stopWorkingMode());
    EXPECT_FALSE(first.isWorking() || second.isWorking());
    ASSERT_TRUE(hardware->stopWorkingMode());
    ASSERT_TRUE(hardware->startWorkingMode());
    ASSERT_TRUE(hardware->disconnect());
    EXPECT_FALSE(first.isConnected() || second.isConnected() || anyRunning.isRunning());

    EXPECT_THAT(running, ElementsAre(true, false, true, false));
    EXPECT_THAT(any, ElementsAre(true, false, true, false));
    EXPECT_THAT(statuses, ElementsAre("Connecting to KESTO 192.168.1.1", "Connecting to KESTO 192.168.1.2",
                                      "", "Switching on the outputs", "", "Switching off the outputs", "",
                                      "Switching on the outputs", "", "Switching off the outputs", "",
                                      "Closing the connections", ""));
    statuses.clear();
    hardware->setIsStatusReported(false);
    ASSERT_TRUE(hardware->prepare());
    EXPECT_TRUE(statuses.empty());
}

TEST_F(HardwareManagerTest, FailuresNameEveryDeviceAndLeaveNothingOn)
{
    first.fail(LinkCall::Connect, "KESTO 192.168.1.1 does not answer.");
    second.fail(LinkCall::ReadState, "broken");
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
    EXPECT_THAT(running, ElementsAre(true, false));

    (void)hardware->getKestos().clear();
    EXPECT_TRUE(hardware->prepare());
    EXPECT_EQ(message(hardware->startWorkingMode()),
              "Error on starting working mode.\n  The hardware configuration does not contain any KESTO.");
}

TEST_F(HardwareManagerTest, AFaultStopsTheOthersWhenWanted)
{
    ASSERT_TRUE(hardware->prepare());
    ASSERT_TRUE(hardware->startWorkingMode());
    std::vector<std::string> faults;
    hardware->signalAvary.connect(
        [&](KesDriver::KesAvary& avary) { faults.push_back(KesDriver::describeFaults(avary)); });
    std::vector<std::string> notices;
    hardware->signalKestoState.connect([&](Kesto* kesto, const char* text) {
        notices.push_back((kesto == secondKesto ? "second: " : "?: ") + std::string(text));
    });
    first.reportAvary({3, 17, false, true, {}}).wait();
    EXPECT_EQ(second.countCalls(LinkCall::StopOutputs), 0U);
    hardware->setIsStopOnFault(true);
    second.fail(LinkCall::StopOutputs, "stuck");
    first.reportConnectionLost().wait();
    EXPECT_EQ(second.countCalls(LinkCall::StopOutputs), 1U);
    EXPECT_EQ(first.countCalls(LinkCall::StopOutputs), 0U);
    EXPECT_THAT(faults, ElementsAre("the emergency button was pressed", "connection error"));
    EXPECT_THAT(
        notices,
        ElementsAre("second: The outputs could not be switched off after a fault of another device: stuck"));
    EXPECT_TRUE(hardware->isOutputRunning()) << "until it is stopped";
    EXPECT_TRUE(hardware->stopWorkingMode()) << "a lost device has switched off by itself";
    EXPECT_EQ(first.countCalls(LinkCall::StopWorkingMode), 0U);
}

TEST_F(HardwareManagerTest, OneSilentDeviceKeepsNoOtherOneWaiting)
{
    ASSERT_TRUE(hardware->prepare());
    ASSERT_TRUE(hardware->startWorkingMode());
    first.hold(LinkCall::StopWorkingMode);
    std::thread stopping([&] { EXPECT_TRUE(hardware->stopWorkingMode()); });
    EXPECT_TRUE(waitUntil([&] { return !second.isWorking(); }));
    EXPECT_TRUE(first.waitForCall(LinkCall::StopWorkingMode));
    EXPECT_TRUE(hardware->isBusy());
    first.release(LinkCall::StopWorkingMode);
    stopping.join();
}

TEST_F(HardwareManagerTest, OperationsTakeTurnsAndSlotsMayCallThem)
{
    first.hold(LinkCall::Connect);
    std::thread preparing([&] { EXPECT_TRUE(hardware->prepare()); });
    ASSERT_TRUE(first.waitForCall(LinkCall::Connect));
    std::atomic<bool> disconnected{false};
    std::thread disconnecting([&] {
        // As a slot would: with the gate held, which the preparing thread needs before it can end.
        Kes::SignalGate::Guard gate;
        EXPECT_TRUE(hardware->disconnect());
        disconnected = true;
    });
    first.release(LinkCall::Connect);
    preparing.join();
    disconnecting.join();
    EXPECT_TRUE(disconnected);
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

TEST_F(HardwareManagerTest, ADestroyedRunningConfigurationSwitchesOff)
{
    ASSERT_TRUE(hardware->prepare());
    ASSERT_TRUE(hardware->startWorkingMode());
    std::vector<std::size_t> removed;
    hardware->getKestos().signalRemoved.connect([&](std::size_t index, Kesto* const& kesto) {
        EXPECT_EQ(kesto->getAddress(), address(static_cast<std::uint8_t>(index + 1)));
        removed.push_back(index);
    });
    EXPECT_TRUE(HardwareIsRunningComponent::getInstance().isRunning());
    hardware.reset();
    EXPECT_FALSE(HardwareIsRunningComponent::getInstance().isRunning());
    EXPECT_FALSE(first.isWorking() || second.isConnected());
    EXPECT_THAT(removed, ElementsAre(1, 0));
}

TEST_F(HardwareManagerTest, CopiesItselfWithoutConnecting)
{
    ASSERT_TRUE(firstKesto->auxDC().set(true, 48.0));
    hardware->getSyncManager().setActiveMode(SyncModeKind::PTP);
    hardware->getVirtualChannels().setIsControlGroupsEnabled(true);
    hardware->setIsStopOnFault(true);
    const auto copy = hardware->clone();
    const auto kestos = copy->getKestos().getItems();
    ASSERT_EQ(kestos.size(), 2U);
    EXPECT_EQ(kestos[0]->getAddress(), address(1));
    EXPECT_TRUE(kestos[0]->auxDC().getEnable());
    EXPECT_EQ(kestos[0]->auxDC().getVolts(), 48.0);
    EXPECT_FALSE(kestos[1]->auxDC().getEnable() || kestos[0]->isConnected());
    EXPECT_EQ(copy->getSyncManager().getActiveMode().getKind(), SyncModeKind::PTP);
    EXPECT_TRUE(copy->getVirtualChannels().isControlGroupsEnabled() && copy->isStopOnFault());
    EXPECT_THAT(copy->getVirtualChannels().getNames(),
                ElementsAre("IA", "IB", "IC", "UA", "UB", "UC", "IA2", "IB2", "IC2", "UA2", "UB2", "UC2"));
    EXPECT_FALSE(copy->isSimulated());
    first.setSimulated(true);
    EXPECT_TRUE(hardware->isSimulated());
}

TEST_F(HardwareManagerTest, RefusesDevicesTwice)
{
    FakeKesto third;
    EXPECT_EQ(add(*hardware, third, 2), nullptr);
    EXPECT_FALSE(hardware->getKestos().addKesto(nullptr));
    hardware->getKestos().setReadOnly(true);
    EXPECT_EQ(add(*hardware, third, 3), nullptr);
    EXPECT_FALSE(hardware->getKestos().clear());
    EXPECT_EQ(hardware->getKestos().find(address(2)), secondKesto);
    EXPECT_EQ(hardware->getKestos().lease().size(), 2U);
}

TEST_F(HardwareManagerTest, DevicesComeAndGoWhileOthersWorkWithThem)
{
    std::atomic<bool> isOver{false};
    std::atomic<int> faults{0};
    hardware->signalAvary.connect([&](KesDriver::KesAvary&) { ++faults; });
    std::thread asking([&] {
        while (!isOver) {
            (void)hardware->prepare();
            for (const auto& kesto : hardware->getKestos().lease())
                (void)kesto->updateState();
        }
    });
    FakeKesto guest;
    for (int round = 0; round < 300; ++round) {
        auto* kesto = add(*hardware, guest, 7);
        ASSERT_TRUE(kesto);
        (void)kesto->connect();
        guest.reportAvary({3, 17, false, true, {}});
        ASSERT_TRUE(hardware->getKestos().remove(kesto));
        EXPECT_TRUE(waitUntil([&] { return !guest.isConnected(); })) << "an attempt under way may end first";
    }
    isOver = true;
    asking.join();
    EXPECT_EQ(hardware->getKestos().size(), 2U);
    const int heard = faults;
    guest.reportAvary({3, 17, false, true, {}}).wait();
    EXPECT_EQ(faults, heard);
}

TEST(SyncMode, HasTextsInBothLanguagesAndKnowsItsPlace)
{
    for (const auto language : {lng::English, lng::Russian}) {
        lng::language = language;
        for (int i = 0; i < SyncModeCount; ++i) {
            const auto& mode = SyncMode::get(static_cast<SyncModeKind>(i));
            EXPECT_EQ(static_cast<int>(mode.getKind()), i);
            EXPECT_EQ(SyncMode::find(mode.getIdentifier()), mode.getKind());
            EXPECT_EQ(std::string(mode.getName()).find("Sync."), std::string::npos) << mode.getName();
            EXPECT_EQ(std::string(mode.getShortName()).find("Sync."), std::string::npos)
                << mode.getShortName();
            EXPECT_EQ(mode.getInfo() == nullptr, mode.getKind() == SyncModeKind::None);
            EXPECT_EQ(mode.isSeqSupported(), mode.getKind() != SyncModeKind::PowerNetwork);
        }
    }
    lng::language = lng::English;
    EXPECT_FALSE(SyncMode::find("Sundial"));
}

} // namespace
