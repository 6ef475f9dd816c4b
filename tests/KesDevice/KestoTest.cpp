#include "../KesDriver/RecordingReceiver.h"
#include "TestBench.h"

#include <support/Record.h>

#include <limits>

using namespace KesTest;

namespace {

class KestoTest : public testing::Test {
protected:
    KestoTest()
    {
        kesto.signalOperationErrorChanged.connect([this](const Kes::Nullable<std::string>& error) {
            record.write(error ? "state [" + *error + "]" : "state unknown");
        });
        kesto.signalReport.connect(
            [this](const KesDriver::Report& report) { record.write(describe(report, 0us)); });
        kesto.signalNotice.connect([this](const char* text) { record.write(std::string("notice ") + text); });
    }

    void run(std::size_t steps)
    {
        ASSERT_TRUE(kesto.connect());
        ASSERT_TRUE(kesto.startWorkingMode());
        ASSERT_TRUE(kesto.runSequence(KesDriver::OutputSequence(steps, {{}, 1h})));
    }

    FakeKesto fake;
    const std::shared_ptr<Kesto> owned = Kesto::create(address(2), fake.createLink());
    Kesto& kesto = *owned;
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

/// What the user switches while the device is being asked counts, and not the older answer.
TEST_F(KestoTest, AnOldStateDoesNotUndoTheUsersSwitch)
{
    for (const bool isConnected : {true, false}) {
        ASSERT_TRUE(kesto.auxDC().set(false, 110.0));
        ASSERT_TRUE(kesto.connect());
        if (!isConnected)
            kesto.disconnect();
        const auto calls = fake.countCalls(LinkCall::ReadState);
        fake.holdAnswer(LinkCall::ReadState);
        auto asking = std::async(std::launch::async, [this] { return kesto.updateState(); });
        ASSERT_TRUE(fake.waitForCall(LinkCall::ReadState, calls + 1));
        const auto supplies = fake.countCalls(LinkCall::SetAuxDC);
        EXPECT_TRUE(kesto.auxDC().set(true, 110.0));
        fake.release(LinkCall::ReadState);
        EXPECT_TRUE(asking.get());
        EXPECT_EQ(fake.countCalls(LinkCall::SetAuxDC), supplies + 1) << "the device hears of it";
        EXPECT_TRUE(kesto.auxDC().getEnable()) << (isConnected ? "asked" : "connected");
    }
}

TEST_F(KestoTest, AnAttemptThatThrowsIsOverForAll)
{
    for (const auto call : {LinkCall::Identify, LinkCall::ReadState}) {
        fake.throwIn(call);
        EXPECT_THROW((void)kesto.connect(), std::bad_alloc);
        EXPECT_EQ(kesto.getState(), DeviceState::Absent);
        EXPECT_FALSE(fake.isConnected());
        auto next = std::async(std::launch::async, [this] { return kesto.connect(); });
        ASSERT_EQ(next.wait_for(2s), std::future_status::ready);
        EXPECT_TRUE(next.get());
        kesto.disconnect();
    }
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

TEST_F(KestoTest, StopsAndLetsGoOfADeviceThatTalksNonsense)
{
    using namespace KesDriver;
    const auto nonsense = nonsenseOf("KESTO-3 No. 00017 (192.168.1.2)");
    const Report reports[] = {InputEvent{9, true, 400us, {}}, InputEvent{0, true, 400us, {}},
                              InputEvent{1, true, 400us, 2},  StepEvent{2, 400us},
                              InputEvent{1, true, 99us, {}},  InputEvent{1, true, DeviceTime::max(), {}},
                              SequenceEvent{true, -1us}};
    for (const auto& report : reports) {
        run(2);
        fake.report(StepEvent{0, 100us}).wait();
        record.take();
        const auto stops = fake.countCalls(LinkCall::StopOutputs);
        fake.report(report);
        fake.report(StepEvent{1, 500us}).wait();
        EXPECT_EQ(fake.countCalls(LinkCall::StopOutputs), stops + 1);
        EXPECT_FALSE(fake.isConnected());
        EXPECT_EQ(kesto.getState(), DeviceState::Faulty);
        EXPECT_THAT(record.take(), ElementsAre("state [" + nonsense + "]", "notice " + nonsense,
                                               testing::StartsWith("finished incomplete ")));
    }
}

TEST_F(KestoTest, AFaultThatHasGoneStaysUntilTheDeviceIsSwitchedOff)
{
    ASSERT_TRUE(kesto.connect());
    ASSERT_TRUE(kesto.startWorkingMode());
    fake.report(KesDriver::KesAvary{3, 17, false, true, {}}).wait();
    EXPECT_TRUE(kesto.updateState());
    EXPECT_EQ(kesto.getState(), DeviceState::Faulty);
    ASSERT_TRUE(kesto.stopWorkingMode());
    EXPECT_TRUE(kesto.updateState());
    EXPECT_EQ(kesto.getState(), DeviceState::Ready);
}

TEST_F(KestoTest, ARefusedSequenceDoesNotMakeTheOneBeforeNonsense)
{
    run(3);
    fake.report(KesDriver::StepEvent{0, 100us}).wait();
    fake.fail(LinkCall::RunSequence, "A sequence is running.");
    EXPECT_FALSE(kesto.runSequence({{{}, 1ms, {}}}));
    record.take();
    fake.report(KesDriver::StepEvent{2, 200us}).wait();
    EXPECT_THAT(record.take(), ElementsAre("step 2 200"));
    fake.report(KesDriver::SequenceEvent{true, 300us});
    fake.reportConnectionLost().wait();
    EXPECT_THAT(record.take(), testing::Not(testing::Contains(testing::StartsWith("finished incomplete"))))
        << "no sequence is left whose end is to be told";
}

TEST_F(KestoTest, SendsASequenceWhenTheEndOfTheOneBeforeHasBeenTold)
{
    run(1);
    ASSERT_TRUE(kesto.stopOutputs());
    std::promise<void> isTelling;
    std::size_t sentMeanwhile = 0;
    kesto.signalReport.connect([&](const KesDriver::Report& report) {
        if (!std::holds_alternative<KesDriver::SequenceEvent>(report))
            return;
        isTelling.set_value();
        const auto end = std::chrono::steady_clock::now() + 100ms;
        while (fake.countCalls(LinkCall::RunSequence) < 2 && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        sentMeanwhile = fake.countCalls(LinkCall::RunSequence) - 1;
    });
    const auto told = fake.report(KesDriver::SequenceEvent{false, 100us});
    isTelling.get_future().wait();
    EXPECT_TRUE(kesto.runSequence({{{}, 1h, {}}}));
    EXPECT_EQ(sentMeanwhile, 0U);
    told.wait();
}

TEST_F(KestoTest, TellsAFaultOnceAndALossWithTheEndOfTheSequence)
{
    run(1);
    fake.report(KesDriver::StepEvent{0, 100us}).wait();
    record.take();
    KesDriver::KesAvary avary{999, 999, false, false, {{"IA", false, false, true}}};
    avary.channels.resize(1000, {std::string(100000, '\xFF') + "\n", false, false, false});
    kesto.signalReport.connect(
        [](const KesDriver::Report&) { throw std::runtime_error("thrown by a receiver"); });
    fake.report(avary);
    fake.report(avary).wait();
    EXPECT_THAT(record.take(),
                ElementsAre("state [Fault: IA - overload]", "fault 17 IAl", "notice thrown by a receiver"));
    avary.channels[0].isOverheat = true;
    fake.report(avary).wait();
    EXPECT_THAT(record.take(), testing::Contains("fault 17 IAhl"));
    // After a silence in which it must have gone.
    std::this_thread::sleep_for(3100ms);
    fake.report(avary).wait();
    EXPECT_THAT(record.take(), testing::Contains("fault 17 IAhl"));
    fake.reportConnectionLost().wait();
    EXPECT_THAT(record.take(),
                ElementsAre("state [KESTO-3 No. 00017 (192.168.1.2): the connection was lost.]", "lost",
                            "notice thrown by a receiver", "finished incomplete 100",
                            "notice thrown by a receiver"));
    EXPECT_EQ(kesto.getState(), DeviceState::Lost);
}

/// What measures would take a contact that it has not heard of for one that did not move.
TEST_F(KestoTest, LetsGoOfADeviceWhoseEventHasNotBeenTaken)
{
    run(1);
    kesto.signalReport.connect([](const KesDriver::Report& report) {
        if (std::holds_alternative<KesDriver::InputEvent>(report))
            throw std::bad_alloc();
    });
    fake.report(KesDriver::StepEvent{0, 100us});
    fake.report(KesDriver::InputEvent{1, true, 200us, 0});
    fake.report(KesDriver::SequenceEvent{true, 300us}).wait();
    EXPECT_TRUE(kesto.getState() == DeviceState::Faulty && !kesto.isConnected() && !fake.isConnected());
    EXPECT_EQ(fake.countCalls(LinkCall::StopOutputs), 1U);
    EXPECT_EQ(record.count("finished incomplete 200"), 1U);
    EXPECT_EQ(record.count("finished complete 300"), 0U);
    EXPECT_EQ(
        record.count("notice KESTO-3 No. 00017 (192.168.1.2): what it has reported could not be processed "
                     "(std::bad_alloc); it was disconnected."),
        1U);
}

TEST_F(KestoTest, BelievesTheLatestOfStateAndFaultWhileItConnects)
{
    const KesDriver::KesAvary overload{3, 17, false, false, {{"IA", false, false, true}}};
    for (const auto call : {LinkCall::Identify, LinkCall::ReadState}) {
        fake.holdAnswer(call);
        const auto calls = fake.countCalls(call);
        auto connecting = std::async(std::launch::async, [this] { return kesto.connect(); });
        ASSERT_TRUE(fake.waitForCall(call, calls + 1));
        fake.report(overload).wait();
        fake.release(call);
        EXPECT_TRUE(connecting.get());
        EXPECT_EQ(kesto.getState(), call == LinkCall::Identify ? DeviceState::Ready : DeviceState::Faulty);
        kesto.disconnect();
    }
    EXPECT_EQ(record.count("fault 17 IAl"), 1U);
}

TEST_F(KestoTest, RefusesNonsensicalAnswersAndASlowWatchdog)
{
    for (const auto& identifer :
         {KesDriver::KestoIdentifer(0, 5), KesDriver::KestoIdentifer(5, 0),
          KesDriver::KestoIdentifer(0xFFFF, 5), KesDriver::KestoIdentifer(5, 0xFFFFFFFFU)}) {
        fake.setIdentifer(identifer);
        EXPECT_EQ(message(kesto.connect()), nonsenseOf("KESTO (192.168.1.2)"));
    }
    fake.setIdentifer({5, 5});
    using KesDriver::OutputLimits;
    for (const auto field :
         {&OutputLimits::maximumAmperes, &OutputLimits::maximumVolts, &OutputLimits::maximumHertz,
          &OutputLimits::maximumVoltAmperes, &OutputLimits::continuousAmperes}) {
        OutputLimits endless;
        endless.*field = std::numeric_limits<double>::infinity();
        fake.setLimits(endless);
        ASSERT_TRUE(kesto.connect());
        EXPECT_EQ(kesto.getLimits(), OutputLimits{});
        kesto.disconnect();
    }
    OutputLimits limits;
    limits.releaseTime = 751ms;
    fake.setLimits(limits);
    EXPECT_EQ(message(kesto.connect()),
              "KESTO-5 No. 00005 (192.168.1.2) leaves its outputs on for 751 ms when it has lost its "
              "controller; no more than 750 ms is safe.");
    EXPECT_FALSE(fake.isConnected());
    limits.releaseTime = 750ms;
    fake.setLimits(limits);
    ASSERT_TRUE(kesto.connect());
    fake.setState({true, true, std::numeric_limits<double>::quiet_NaN(), ""});
    EXPECT_FALSE(kesto.updateState());
    EXPECT_EQ(kesto.getOperationError(), nonsenseOf("KESTO-5 No. 00005 (192.168.1.2)"));
}

TEST(KestoLifeTime, MayDieInsideItsOwnSignalAndWhileItsDeviceTalks)
{
    for (int round = 0; round < 50; ++round) {
        FakeKesto fake;
        auto kesto = Kesto::create(address(3), fake.createLink());
        ASSERT_TRUE(kesto->connect());
        const bool inside = round % 2 == 0;
        kesto->signalOperationErrorChanged.connect([&](const Kes::Nullable<std::string>&) {
            if (inside)
                kesto.reset();
        });
        fake.report(KesDriver::KesAvary{3, 17, false, true, {}});
        auto last = fake.reportConnectionLost();
        if (!inside)
            kesto.reset();
        last.wait();
        EXPECT_FALSE(kesto);
        EXPECT_FALSE(fake.isConnected());
    }
}

} // namespace
