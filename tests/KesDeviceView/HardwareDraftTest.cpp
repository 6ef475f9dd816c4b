#include <KesDevice/view/HardwareDraft.h>

#include <gmock/gmock.h>

namespace {

using KesDevice::HardwareDraft;
using KesDevice::Kesto;

/// One device, at 10.0.0.1.
class HardwareDraftTest : public testing::Test {
protected:
    HardwareDraftTest() { EXPECT_TRUE(hardware->addKesto(*Kesto::Address::parse("10.0.0.1"))); }

    const std::unique_ptr<KesDevice::HardwareManager> hardware = KesDevice::HardwareManager::create();
};

TEST_F(HardwareDraftTest, RefusesAddressesThatNoDeviceCanHaveAndThoseTaken)
{
    HardwareDraft draft(*hardware);
    const struct {
        const char* text;
        const char* reason;
    } refused[] = {
        {"", "not a network address"},          {"10.0.0.256", "not a network address"},
        {"10.0.0.01", "not a network address"}, {"%s%n", "“%s%n” is not"},
        {"0.0.0.0", "cannot be the address"},   {"224.0.0.1", "cannot be the address"},
        {" 10.0.0.1 ", "in the list already"},
    };
    for (const auto& [text, reason] : refused) {
        const auto result = draft.add(text);
        ASSERT_FALSE(result) << text;
        EXPECT_THAT(result.getError()->getMessage(), testing::HasSubstr(reason)) << text;
    }
    EXPECT_TRUE(draft.add(" 223.0.0.2\n"));
    EXPECT_EQ(draft.getDevices().size(), 2U);
}

TEST_F(HardwareDraftTest, ARefusedVoltageIsExplainedAndTakesNoEffect)
{
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
