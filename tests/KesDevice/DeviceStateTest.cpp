// Each cause of a change of a device's state is told once.

#include "DeviceActions.h"

#include <KesDevice/DeviceState.h>

#include <future>

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
        isStarted = note(hardware->prepare()) && note(hardware->startWorkingMode());
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

} // namespace
} // namespace KesTest
