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

TEST(HardwareDraftTest, RefusesAddressesThatNoDeviceCanHaveAndThoseTaken)
{
    const auto hardware = configuration({"10.0.0.1"});
    HardwareDraft draft(*hardware);
    const struct {
        const char* text;
        const char* reason;
    } refused[] = {
        {"", "not a network address"},          {"10.0.0.256", "not a network address"},
        {"10.0.0.01", "not a network address"}, {"%s%n", "“%s%n” is not"},
        {"0.0.0.0", "cannot be the address"},   {"255.255.255.255", "cannot be the address"},
        {" 10.0.0.1 ", "in the list already"},
    };
    for (const auto& [text, reason] : refused) {
        const auto result = draft.add(text);
        ASSERT_FALSE(result) << text;
        EXPECT_THAT(result.getError()->getMessage(), testing::HasSubstr(reason)) << text;
    }
    EXPECT_TRUE(draft.add(" 10.0.0.2\n"));
    EXPECT_EQ(draft.getDevices().size(), 2U);
}

TEST(HardwareDraftTest, HandsOverOrderSupplyModeAndSettingsAndLeavesTheEditedOneAlone)
{
    const auto hardware = configuration({"10.0.0.1", "10.0.0.2", "10.0.0.3"});
    hardware->setIsStopOnFault(true);
    hardware->getSyncManager().setActiveMode(KesDevice::SyncModeKind::Cable);
    ASSERT_TRUE(hardware->getKestos().find(address("10.0.0.3"))->auxDC().set(true, 110));

    HardwareDraft draft(*hardware);
    draft.move(2, -1);
    draft.move(0, -1);
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
    EXPECT_EQ(taken->getKestos().find(address("10.0.0.4"))->auxDC().getVolts(), 24.5);
    EXPECT_EQ(taken->getSyncManager().getActiveMode().getKind(), KesDevice::SyncModeKind::GPS);
    EXPECT_TRUE(taken->isStopOnFault());

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
    draft.setAuxDC(0, true, " 24 ");
    draft.setAuxDC(0, true, "abc");
    EXPECT_EQ(draft.getDevices()[0].voltsProblem, "“abc” is not a voltage; allowed: 12 … 300 V");
    EXPECT_EQ(draft.take()->getKestos().getItems()[0]->auxDC().getVolts(), 24.0);
}

} // namespace
