// Each cause of a change of a device's state is told once.

#include "DeviceActions.h"

#include <KesDevice/DeviceState.h>
#include <KesDriver/Refusal.h>

#include <support/Record.h>

namespace KesTest {
namespace {

using enum DeviceState;

/// A cause is told once, also when it comes while an operation of the configuration is under way.
class OneCause : public testing::TestWithParam<std::tuple<LinkCall, const DeviceAction*>> {
protected:
    OneCause()
    {
        hardware->signalAvary.connect([this](KesDriver::KesAvary&) { ++told; });
        hardware->signalKestoState.connect([this](Kesto*, const char*) { ++told; });
    }
    bool note(const Kes::Result& result)
    {
        told += static_cast<int>(!result);
        return result;
    }
    /// What a program does, as far as it gets.
    void run()
    {
        {
            const HardwareManager::ToldByResults toldByResults(*hardware);
            isStarted = note(hardware->prepare()) && note(hardware->startWorkingMode());
        }
        note(hardware->stopWorkingMode());
    }

    FakeKesto first;
    FakeKesto second;
    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
    std::atomic<int> told{0};
    bool isStarted = false;
};

TEST_P(OneCause, IsToldOnceInARun)
{
    const auto [call, what] = GetParam();
    const auto kesto = add(*hardware, first, 2);
    add(*hardware, second, 3);
    // The first device has done its part, and the second one stands in the middle of it.
    second.hold(call);
    auto running = std::async(std::launch::async, [this] { run(); });
    ASSERT_TRUE(second.waitForCall(call));
    const auto wanted = call == LinkCall::StartWorkingMode ? Working : Ready;
    ASSERT_TRUE(waitUntil([&] { return kesto->getState() == wanted; }));
    (void)what->run(*kesto, first);
    // A device that is still faulty says so when it is asked.
    if (what == &Actions::fault)
        first.setState({false, false, 0.0, "Overload"});
    second.release(call);
    running.get();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(isStarted, call == LinkCall::StopWorkingMode) << "with a device that has failed";
    EXPECT_FALSE(hardware->isOutputRunning() || first.isWorking() || second.isWorking());
}

INSTANTIATE_TEST_SUITE_P(Moments, OneCause,
                         testing::Combine(testing::Values(LinkCall::Identify, LinkCall::StartWorkingMode,
                                                          LinkCall::StopWorkingMode),
                                          testing::Values(&Actions::fault, &Actions::loss,
                                                          &Actions::nonsense)));

/// A device reports a fault in its own time, while others find out about it by asking.
class LateRecord : public testing::Test {
protected:
    LateRecord()
    {
        hardware->signalAvary.connect(
            [this](KesDriver::KesAvary& avary) { told.write(KesDriver::describeFaults(avary)); });
        hardware->signalKestoState.connect([this](Kesto*, const char* text) { told.write(text); });
        EXPECT_TRUE(kesto->connect());
    }
    void fail()
    {
        fake.setState({false, false, 0.0, "IA - overload"});
        fake.answer(LinkCall::StartWorkingMode,
                    KesDriver::Refusal::failure(KesDriver::RefusalCode::Fault, "Fault: IA - overload"));
    }
    void recover()
    {
        fake.setState({true, false, 0.0, ""});
        fake.answer(LinkCall::StartWorkingMode, true);
    }
    void report(const std::vector<const char*>& channels = {"IA"})
    {
        KesDriver::KesAvary overload{3, 17, false, false, {}};
        for (const auto* channel : channels)
            overload.channels.push_back({channel, false, false, true});
        fake.report(overload).wait();
    }

    FakeKesto fake;
    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
    Kesto* const kesto = add(*hardware, fake, 2);
    Record told;
};

TEST_F(LateRecord, IsNoNewsAfterAResultThatHasToldIt)
{
    const std::pair<const char*, std::function<Kes::Result()>> ways[] = {
        {"refused", [this] { return hardware->startWorkingMode(); }},
        {"asked before",
         [this] {
             EXPECT_TRUE(kesto->updateState());
             return hardware->startWorkingMode();
         }},
        {"prepared",
         [this] {
             const HardwareManager::ToldByResults one(*hardware);
             EXPECT_TRUE(hardware->prepare());
             return hardware->startWorkingMode();
         }},
        {"the device alone", [this] { return kesto->startWorkingMode(); }},
    };
    for (const auto& [name, start] : ways) {
        SCOPED_TRACE(name);
        fail();
        EXPECT_THAT(message(start()), testing::HasSubstr("IA - overload"));
        EXPECT_EQ(kesto->getState(), DeviceState::Faulty);
        report();
        report();
        EXPECT_EQ(kesto->getOperationError(), "Fault: IA - overload");
        EXPECT_THAT(told.take(), testing::IsEmpty());
        report({"IA", "IB"});
        EXPECT_THAT(told.take(), ElementsAre("IA - overload; IB - overload")) << "it has changed";
        EXPECT_TRUE(kesto->stopWorkingMode());
        recover();
        EXPECT_TRUE(kesto->updateState());
        report();
        EXPECT_THAT(told.take(), ElementsAre("IA - overload")) << "it has come back";
        EXPECT_TRUE(kesto->updateState());
        EXPECT_TRUE(hardware->startWorkingMode());
        EXPECT_TRUE(hardware->stopWorkingMode());
    }
}

TEST_F(LateRecord, IsToldWhenNoResultHasDoneSo)
{
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"prepared only", [this] { EXPECT_TRUE(hardware->prepare()); }},
        {"found out during a stop",
         [this] {
             fake.hold(LinkCall::StopWorkingMode);
             const auto calls = fake.countCalls(LinkCall::StopWorkingMode);
             auto stopping = std::async(std::launch::async, [this] { return kesto->stopWorkingMode(); });
             EXPECT_TRUE(fake.waitForCall(LinkCall::StopWorkingMode, calls + 1));
             EXPECT_TRUE(kesto->updateState());
             fake.release(LinkCall::StopWorkingMode);
             EXPECT_TRUE(stopping.get());
         }},
    };
    for (const auto& [name, find] : ways) {
        SCOPED_TRACE(name);
        fail();
        find();
        EXPECT_THAT(told.take(), testing::IsEmpty());
        report();
        report();
        EXPECT_THAT(told.take(), ElementsAre("IA - overload"));
        recover();
        EXPECT_TRUE(kesto->updateState());
    }
    fail();
    EXPECT_FALSE(hardware->startWorkingMode());
    report({"IA", "IB"});
    EXPECT_THAT(told.take(), ElementsAre("IA - overload; IB - overload")) << "one more than the result says";
}

} // namespace
} // namespace KesTest
