#include "TestBench.h"

#include <support/Record.h>

#include <limits>
#include <stdexcept>

using namespace KesTest;

namespace {

class KestoTest : public testing::Test {
protected:
    KestoTest()
    {
        kesto.signalOperationErrorChanged.connect([this](const Kes::Nullable<std::string>& error) {
            record.write(error ? "state [" + *error + "]" : "state unknown");
        });
        kesto.signalInput.connect([this](const KesDriver::InputEvent& event) {
            record.write("input " + std::to_string(event.input) + " at " +
                         std::to_string(event.time.count()));
        });
        kesto.signalStep.connect([this](const KesDriver::StepEvent& event) {
            record.write("step " + std::to_string(event.step));
        });
        kesto.signalSequenceFinished.connect([this](const KesDriver::SequenceEvent& event) {
            record.write((event.isComplete ? "complete at " : "incomplete at ") +
                         std::to_string(event.time.count()));
        });
        kesto.signalAvary.connect([this](KesDriver::KesAvary& avary) {
            record.write("avary " + std::to_string(avary.serialNumber) + ' ' +
                         KesDriver::describeFaults(avary));
        });
        kesto.signalNotice.connect([this](const char* text) { record.write(std::string("notice ") + text); });
    }

    FakeKesto fake;
    Kesto kesto{address(2), fake.createLink()};
    Record record;
};

TEST_F(KestoTest, ConnectingTellsIdentityAndState)
{
    ASSERT_TRUE(kesto.auxDC().set(true, 110.0));
    ASSERT_TRUE(kesto.connect());
    EXPECT_EQ(kesto.toDisplayString(), "KESTO-3 No. 00017 (192.168.1.2)");
    EXPECT_THAT(record.take(), ElementsAre("state []"));

    fake.setState({false, true, 110.0, "Fault: IA - overload"});
    EXPECT_TRUE(kesto.updateState());
    fake.setState({false, false, 0.0, ""});
    EXPECT_TRUE(kesto.updateState());
    EXPECT_TRUE(kesto.updateState());
    kesto.disconnect();
    EXPECT_THAT(record.take(), ElementsAre("state [Fault: IA - overload]", "state [Not ready for operation]",
                                           "state unknown"));
    EXPECT_TRUE(kesto.updateState()) << "asking connects";
}

TEST_F(KestoTest, EveryStepOfConnectingMayFail)
{
    for (const auto call : {LinkCall::Connect, LinkCall::Identify, LinkCall::SetAuxDC, LinkCall::ReadState}) {
        fake.fail(call, "192.168.1.2 is deaf");
        EXPECT_EQ(message(kesto.connect()), "192.168.1.2 is deaf");
        EXPECT_FALSE(kesto.isConnected());
        EXPECT_EQ(kesto.getOperationError(), "192.168.1.2 is deaf");
        fake.fail(call, "");
    }
    EXPECT_TRUE(kesto.connect());
}

TEST_F(KestoTest, DisconnectingDuringAnAttemptHasTheLastWord)
{
    fake.hold(LinkCall::Identify);
    Kes::Result result = true;
    std::thread connecting([&] { result = kesto.connect(); });
    ASSERT_TRUE(fake.waitForCall(LinkCall::Identify));
    kesto.disconnect();
    fake.release(LinkCall::Identify);
    connecting.join();
    EXPECT_EQ(message(result), "KESTO-3 No. 00017 (192.168.1.2) has been disconnected.");
    EXPECT_FALSE(kesto.isConnected());
    EXPECT_FALSE(kesto.getOperationError()) << "what was found out before is history";
}

TEST_F(KestoTest, RefusesValuesBeforeTheyAreSent)
{
    ASSERT_TRUE(kesto.connect());
    KesDriver::OutputState outputs;
    outputs.voltages[1].magnitude = 301.0;
    EXPECT_EQ(message(kesto.setOutputs(outputs)), "UB: 301 V is above the limit of 300 V.");
    EXPECT_EQ(message(kesto.runSequence({{{}, 1ms, {}}, {outputs, 1ms, {}}})),
              "Step 2. UB: 301 V is above the limit of 300 V.");
    EXPECT_EQ(message(kesto.auxDC().set(true, 301.0)),
              "Auxiliary supply: 301 V is above the limit of 300 V.");
    EXPECT_FALSE(kesto.auxDC().getEnable());
    EXPECT_EQ(fake.countCalls(LinkCall::SetOutputs), 0U);
}

TEST_F(KestoTest, PassesPlausibleEventsOnAndDropsTheOthers)
{
    ASSERT_TRUE(kesto.connect());
    ASSERT_TRUE(kesto.runSequence({{{}, 1ms, {}}, {{}, 1ms, {}}}));
    record.take();
    fake.reportStep(0, 100us);
    fake.reportInput(8, true, 100us);
    fake.reportSequenceFinished(true, 300us).wait();
    EXPECT_THAT(record.take(), ElementsAre("step 0", "input 8 at 100", "complete at 300"));

    fake.reportInput(9, true, 400us);
    fake.reportStep(2, 400us);
    fake.reportInput(1, true, 399us); // goes back
    fake.reportInput(1, true, KesDriver::DeviceTime::max());
    fake.reportInput(2, true, 400us); // sane again
    fake.reportSequenceFinished(true, -1us).wait();
    const std::string nonsense = "KESTO-3 No. 00017 (192.168.1.2) sends data that make no sense.";
    EXPECT_THAT(record.take(), ElementsAre("state [" + nonsense + "]", "notice " + nonsense, "input 2 at 400",
                                           "incomplete at 400"));
}

TEST_F(KestoTest, ReportsFaultsAndLostConnections)
{
    ASSERT_TRUE(kesto.connect());
    record.take();
    KesDriver::KesAvary avary{999, 999, false, false, {{"IA", false, false, true}}};
    avary.channels.resize(1000, {std::string(100000, '\xFF') + "\n", false, false, false});
    kesto.signalAvary.connect([](KesDriver::KesAvary&) { throw std::runtime_error("thrown by a receiver"); });
    fake.reportAvary(avary);
    fake.reportAvary(avary).wait();
    EXPECT_THAT(record.take(), ElementsAre("state [Fault: IA - overload]", "avary 17 IA - overload",
                                           "avary 17 IA - overload"));
    fake.reportConnectionLost().wait();
    EXPECT_THAT(record.take(),
                ElementsAre("state [KESTO-3 No. 00017 (192.168.1.2): the connection was lost.]",
                            "avary 17 connection error"));
    EXPECT_FALSE(kesto.isConnected());
}

TEST_F(KestoTest, RefusesNonsensicalAnswers)
{
    const std::string nonsense = " sends data that make no sense.";
    for (const auto& identifer :
         {KesDriver::KestoIdentifer(0, 5), KesDriver::KestoIdentifer(5, 0),
          KesDriver::KestoIdentifer(0xFFFF, 5), KesDriver::KestoIdentifer(5, 0xFFFFFFFFU)}) {
        fake.setIdentifer(identifer);
        EXPECT_EQ(message(kesto.connect()), "KESTO (192.168.1.2)" + nonsense);
    }
    fake.setIdentifer({5, 5});
    ASSERT_TRUE(kesto.connect());
    fake.setState({true, true, std::numeric_limits<double>::quiet_NaN(), ""});
    EXPECT_FALSE(kesto.updateState());
    EXPECT_EQ(kesto.getOperationError(), "KESTO-5 No. 00005 (192.168.1.2)" + nonsense);
}

TEST(KestoLifeTime, MayDieInsideItsOwnSignalAndWhileItsDeviceTalks)
{
    for (int round = 0; round < 50; ++round) {
        FakeKesto fake;
        auto kesto = std::make_unique<Kesto>(address(3), fake.createLink());
        ASSERT_TRUE(kesto->connect());
        const bool inside = round % 2 == 0;
        kesto->signalOperationErrorChanged.connect([&](const Kes::Nullable<std::string>&) {
            if (inside)
                kesto.reset();
        });
        fake.reportAvary({3, 17, false, true, {}});
        auto last = fake.reportConnectionLost();
        if (!inside)
            kesto.reset();
        last.wait();
        EXPECT_FALSE(kesto);
        EXPECT_FALSE(fake.isConnected());
    }
}

} // namespace
