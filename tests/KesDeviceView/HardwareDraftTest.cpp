#include <KesDevice/view/HardwareDraft.h>

#include <KesCommon/Language.h>

#include <gmock/gmock.h>

namespace {

using KesDevice::HardwareDraft;
using KesDevice::Kesto;

Kesto::Address address(const char* text)
{
    return *Kesto::Address::parse(text);
}

std::unique_ptr<KesDevice::HardwareManager> configuration(std::initializer_list<const char*> addresses)
{
    auto hardware = KesDevice::HardwareManager::create();
    for (const char* text : addresses)
        EXPECT_TRUE(hardware->getKestos().addKesto(std::make_unique<Kesto>(address(text))));
    return hardware;
}

std::vector<std::string> addressesOf(const std::vector<KesDevice::DeviceState>& states)
{
    std::vector<std::string> addresses;
    for (const auto& state : states)
        addresses.push_back(state.address);
    return addresses;
}

TEST(HardwareDraftTest, RefusesAddressesThatNoDeviceCanHaveAndThoseTaken)
{
    const auto hardware = configuration({"10.0.0.1"});
    HardwareDraft draft(*hardware);
    int changes = 0;
    draft.signalChanged.connect([&] { ++changes; });
    const struct {
        const char* text;
        const char* reason;
    } refused[] = {
        {"", "not a network address"},
        {"10.0.0", "not a network address"},
        {"10.0.0.256", "not a network address"},
        {"10.0.0.1.2", "not a network address"},
        {"10.0.0.01", "not a network address"},
        {"10,0,0,2", "not a network address"},
        {"kesto", "not a network address"},
        {"10.0.0.-1", "not a network address"},
        {"%s%n", "“%s%n” is not"},
        {"0.0.0.0", "cannot be the address"},
        {"224.0.0.1", "cannot be the address"},
        {"255.255.255.255", "cannot be the address"},
        {"10.0.0.1", "in the list already"},
        {" 10.0.0.1 ", "in the list already"},
    };
    for (const auto& [text, reason] : refused) {
        const auto result = draft.add(text);
        ASSERT_FALSE(result) << text;
        EXPECT_THAT(result.getError()->getMessage(), testing::HasSubstr(reason)) << text;
    }
    EXPECT_EQ(changes, 0);
    EXPECT_TRUE(draft.add(" 10.0.0.2\n"));
    EXPECT_FALSE(draft.add("10.0.0.2"));
    EXPECT_EQ(changes, 1);
    EXPECT_THAT(addressesOf(draft.getDevices()), testing::ElementsAre("10.0.0.1", "10.0.0.2"));
}

TEST(HardwareDraftTest, HandsOverOrderSupplyModeAndSettingsAndLeavesTheEditedOneAlone)
{
    const auto hardware = configuration({"10.0.0.1", "10.0.0.2", "10.0.0.3"});
    hardware->setIsStopOnFault(true);
    hardware->getVirtualChannels().setIsControlGroupsEnabled(true);
    hardware->getSyncManager().setActiveMode(KesDevice::SyncModeKind::Cable);
    ASSERT_TRUE(hardware->getKestos().find(address("10.0.0.3"))->auxDC().set(true, 110));

    HardwareDraft draft(*hardware);
    EXPECT_TRUE(draft.getDevices()[2].isAuxDCEnabled);
    EXPECT_EQ(draft.getDevices()[2].volts, "110");
    draft.move(2, -1);
    draft.move(0, -1);
    draft.move(2, 1);
    draft.move(7, 1);
    draft.remove(0);
    draft.remove(9);
    ASSERT_TRUE(draft.add("10.0.0.4"));
    draft.setAuxDC(2, true, "24,5");
    draft.setSyncMode(KesDevice::SyncModeKind::GPS);

    const auto taken = draft.take();
    std::vector<std::string> order;
    for (auto* kesto : taken->getKestos().getItems())
        order.push_back(kesto->getAddress().to_string());
    EXPECT_THAT(order, testing::ElementsAre("10.0.0.3", "10.0.0.2", "10.0.0.4"));
    EXPECT_EQ(taken->getKestos().find(address("10.0.0.3"))->auxDC().getVolts(), 110);
    EXPECT_TRUE(taken->getKestos().find(address("10.0.0.3"))->auxDC().getEnable());
    EXPECT_EQ(taken->getKestos().find(address("10.0.0.4"))->auxDC().getVolts(), 24.5);
    EXPECT_EQ(taken->getSyncManager().getActiveMode().getKind(), KesDevice::SyncModeKind::GPS);
    EXPECT_TRUE(taken->isStopOnFault());
    EXPECT_TRUE(taken->getVirtualChannels().isControlGroupsEnabled());

    EXPECT_EQ(hardware->getKestos().size(), 3U);
    EXPECT_EQ(hardware->getSyncManager().getActiveMode().getKind(), KesDevice::SyncModeKind::Cable);
}

TEST(HardwareDraftTest, ARefusedVoltageIsExplainedAndTakesNoEffect)
{
    const auto hardware = configuration({"10.0.0.1"});
    for (const char* volts : {"11.9", "300.5", "-24", "", "abc", "1e9", "nan"}) {
        HardwareDraft draft(*hardware);
        draft.setAuxDC(0, true, "48");
        draft.setAuxDC(0, true, volts);
        EXPECT_EQ(draft.getDevices()[0].volts, volts);
        EXPECT_FALSE(draft.getDevices()[0].voltsProblem.empty()) << volts;
        EXPECT_EQ(draft.findProblem(), 0U);
        // Off, the voltage that nobody sees must not stand in the way.
        draft.setAuxDC(0, false, volts);
        EXPECT_EQ(draft.findProblem(), std::nullopt);
        EXPECT_EQ(draft.getDevices()[0].volts, "48");
    }
    HardwareDraft draft(*hardware);
    for (const char* volts : {"12", "300", "110,5", " 24 "}) {
        draft.setAuxDC(0, true, volts);
        EXPECT_EQ(draft.findProblem(), std::nullopt) << volts;
    }
    draft.setAuxDC(0, true, "abc");
    EXPECT_EQ(draft.getDevices()[0].voltsProblem, "“abc” is not a voltage; allowed: 12 … 300 V");
    EXPECT_EQ(draft.take()->getKestos().getItems()[0]->auxDC().getVolts(), 24.0);
}

TEST(HardwareDraftTest, WhatADeviceTellsIsKeptWithItsAddress)
{
    const auto hardware = configuration({"10.9.0.1", "10.9.0.2"});
    HardwareDraft draft(*hardware);
    draft.setAsking(address("10.9.0.2"));
    draft.move(1, -1);
    draft.setIdentifer(address("10.9.0.2"), KesDriver::KestoIdentifer(3, 17));
    draft.setIdentityError(address("10.9.0.1"), "silent");
    draft.setIdentifer(address("10.9.0.77"), KesDriver::KestoIdentifer(3, 18));
    EXPECT_EQ(draft.getDevices()[0].identity, "KESTO-3 No. 00017");
    EXPECT_EQ(draft.getDevices()[0].identityState, KesDevice::IdentityState::Known);
    EXPECT_EQ(draft.getDevices()[1].identity, "silent");
    EXPECT_EQ(draft.getDevices()[1].identityState, KesDevice::IdentityState::Failed);
}

} // namespace
