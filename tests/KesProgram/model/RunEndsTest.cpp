// The ends of runs: whoever asks for one gets it, and what is left of one does not reach the next.

#include "RunFaults.h"

#include "support/ScheduleBench.h"

#include <atomic>
#include <thread>
#include <tuple>

namespace KesTest {
namespace {

using RunEnds = RunFaults<RecordingModel>;

/// What the devices are told does not pass through the test body.
TEST_F(RunEnds, OutputsAreOffAtOnceWhateverTheTestBodyDoes)
{
    model.body = [](RecordingModel& self) {
        self.bodyDoor.waitUntilOpenOr();
        self._finish();
    };
    startAndRun();
    model.switchOffAtOnce();
    EXPECT_FALSE(model.isRunning());
    EXPECT_TRUE(waitFor([this] { return !first.isPuttingOut(); }, 1s));
    EXPECT_EQ(countFinishes(), 0U);
    model.bodyDoor.open();
    EXPECT_TRUE(waitForFinish());
    EXPECT_EQ(model.count("onStop"), 1U);
}

TEST_F(RunEnds, WhatIsBeingPreparedBecomesNoRunOnceAllIsToBeOff)
{
    model.prepareDoor.close();
    start();
    ASSERT_TRUE(waitFor([this] { return model.has("onPrepareHardware"); }));
    model.switchOffAtOnce();
    model.prepareDoor.open();
    EXPECT_TRUE(waitForFinish());
    EXPECT_FALSE(model.has("onStart") || hardware().isOutputRunning());
    // The next one is not refused.
    startAndRun();
}

TEST_F(RunEnds, APowerOffAtTheMomentAtWhichTheRunBeginsStopsIt)
{
    Kes::ScopedConnection begun = model.signalRunningChanged.connect([&] {
        begun.disconnect();
        model.beginDisconnect();
        const Kes::SignalGate::Release gate;
        EXPECT_TRUE(comesTrue([this] { return !hardware().isOutputRunning(); }));
    });
    start();
    EXPECT_TRUE(waitForFinish(3s)) << "nothing stops the run";
}

TEST_F(RunEnds, TheNextRunWaitsForWhatIsLeftOfTheOneBefore)
{
    std::thread finisher;
    model.body = [&](RecordingModel& self) {
        if (self.count("onStart") == 1)
            finisher = std::thread([&] { self._finish(); });
        else
            self.bodyDoor.waitUntilOpenOr([&] { return !self.isRunning(); });
    };
    Kes::ScopedConnection finished = model.signalFinished.connect([&](bool) {
        finished.disconnect();
        const Kes::SignalGate::Release gate;
        std::this_thread::sleep_for(100ms);
    });
    start();
    ASSERT_TRUE(waitFor([this] { return model.startTest(); }));
    finisher.join();
    ASSERT_TRUE(waitFor([this] { return model.count("onStart") == 2; }));
    EXPECT_TRUE(model.isRunning() && model.isOutputStarted());
    model.stopTest();
    model._finish();
}

/// Something that throws whenever it is called from the start of a run on, and whether the run is ended by
/// its own stop or by that of closing.
class ThrowingEnds : public RunFaults<RecordingModel>,
                     public testing::WithParamInterface<std::tuple<const char*, bool>> {
protected:
    std::atomic<bool> isClosed{false};
    Kes::ScopedConnection closed = model.signalClosed.connect([this] { isClosed = true; });
};

INSTANTIATE_TEST_SUITE_P(Everywhere, ThrowingEnds,
                         testing::Combine(testing::Values("onPrepareHardware", "onStart", "onStop",
                                                          "onFinishHardware", "onFinished", "onClosing",
                                                          "hardwareChanged", "canStart", "canStop", "running",
                                                          "finished(true)", "finished(false)", "state",
                                                          "message: told", "closing", "closed"),
                                          testing::Bool()));

TEST_P(ThrowingEnds, LeaveTheOutputsOffAndTheProgramClosed)
{
    const auto [throwing, isStoppedFirst] = GetParam();
    model.throwing = throwing;
    start();
    // It may have ended by what it throws.
    ASSERT_TRUE(waitFor([this] { return model.isOutputStarted() || countFinishes() > 0; }));
    (void)first.putOut(1.0);
    model.signalMessage.emit("told");
    if (isStoppedFirst) {
        model.stopTest();
        EXPECT_TRUE(waitForFinish());
        EXPECT_TRUE(waitFor([this] { return !first.isPuttingOut(); }, 1s));
    }
    model.close();
    EXPECT_TRUE(waitFor([this] { return isClosed.load(); }));
    EXPECT_FALSE(first.isPuttingOut() || first->isWorking());
    EXPECT_FALSE(model.isRunning() || model.isOutputStarted());
    EXPECT_EQ(countFinishes(), 1U);
}

} // namespace
} // namespace KesTest
