// The ends of runs: whoever asks for one gets it, and what is left of one does not reach the next.

#include "RunFaults.h"

#include "support/ScheduleBench.h"

#include <thread>

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

} // namespace
} // namespace KesTest
