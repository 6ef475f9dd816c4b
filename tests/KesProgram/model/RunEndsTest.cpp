// The ends of runs: whoever asks for one gets it, and what is left of one does not reach the next.

#include "RunFaults.h"

#include "support/NoThreads.h"
#include "support/ScheduleBench.h"

namespace {

using namespace KesTest;
using RunEnds = RunFaults;

/// What the devices are told does not pass through the test body. Without a thread for it the caller tells
/// them.
TEST_F(RunEnds, OutputsAreOffAtOnceWhateverTheTestBodyDoes)
{
    model.body = {};
    for (const bool hasThreads : {true, false}) {
        model.take();
        model.bodyDoor.close();
        startAndRun();
        auto noThreads = hasThreads ? nullptr : std::make_unique<NoThreads>();
        model.switchOffAtOnce();
        noThreads.reset();
        EXPECT_FALSE(model.isRunning());
        EXPECT_TRUE(hasThreads || !(first.isPuttingOut() || first->isWorking()));
        EXPECT_TRUE(waitFor([this] { return !first.isPuttingOut(); }, 2s));
        EXPECT_EQ(countFinishes(), 0U);
        model.bodyDoor.open();
        EXPECT_TRUE(waitForFinish());
        EXPECT_EQ(model.count("onStop"), 1U);
    }
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

/// The devices are off before the test body has begun, or only afterwards.
TEST_F(RunEnds, APowerOffAtTheMomentAtWhichTheRunBeginsStopsIt)
{
    for (const bool isLate : {false, true}) {
        Kes::ScopedConnection begun = model.signalRunningChanged.connect([&] {
            begun.disconnect();
            first->setAnswerDelay(isLate ? 200ms : 0ms);
            model.beginDisconnect();
            const Kes::SignalGate::Release gate;
            EXPECT_TRUE(isLate || waitUntil([this] { return !hardware().isOutputRunning(); }));
        });
        start();
        EXPECT_TRUE(waitFor([&] { return countFinishes() == 1U + isLate; })) << "nothing stops the run";
    }
}

TEST_F(RunEnds, APowerOffDuringARunDisconnectsAtItsEnd)
{
    startAndRun();
    EXPECT_FALSE(model.getCanStart());
    EXPECT_TRUE(hardware().isOutputRunning() && first.isReached());
    model.beginDisconnect();
    EXPECT_TRUE(waitForFinish());
    EXPECT_FALSE(hardware().isOutputRunning() || first.isReached());

    // The request comes when the run has looked at requests for the last time.
    const Kes::ScopedConnection finished =
        model.signalFinished.connect([&](bool) { model.beginDisconnect(); });
    model.bodyDoor.open();
    start();
    EXPECT_TRUE(waitFor([this] { return countFinishes() == 2 && !first.isReached(); }));
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

/// From when on something throws whenever it is called, and so whether the run is ended by its own stop or by
/// that of closing.
enum class From { Announcing, Preparing, Running, Stopping, Finishing, ShuttingDown, Closing };

class ThrowingEnds : public RunFaults, public testing::WithParamInterface<std::tuple<const char*, From>> {
protected:
    ThrowingEnds()
    {
        hardware().setIsStatusReported(true);
        model.prepareDoor.close();
        model.body = {};
        model.onEntry = [this](const std::string& entry) {
            if (entry == "onFinishHardware")
                reach(From::Finishing);
        };
    }

    void reach(From moment)
    {
        if (moment != std::get<From>(GetParam()))
            return;
        model.throwing = std::get<const char*>(GetParam());
        // What may come at any time.
        model.signalMessage.emit("told");
        KesDevice::HardwareControl::signalHardwareChanged.emit(KesDevice::HardwareControl::getInstance());
    }
    bool startSafely()
    {
        try {
            return model.startTest();
        } catch (const std::runtime_error&) {
            return false;
        }
    }
    void run()
    {
        EXPECT_TRUE(waitFor([this] { return model.has("onPrepareHardware"); }));
        reach(From::Preparing);
        model.prepareDoor.open();
        EXPECT_TRUE(waitFor([this] { return model.isOutputStarted() || countFinishes() > 0; }));
        (void)first.putOut(1.0);
        reach(From::Running);
        if (std::get<From>(GetParam()) == From::Closing)
            return;
        model.stopTest();
        reach(From::Stopping);
        model.bodyDoor.open();
        EXPECT_TRUE(waitForFinish());
        EXPECT_TRUE(waitFor([this] { return !first.isPuttingOut(); }, 2s));
    }
    /// Whether a hook has thrown whose text is for the user.
    bool hasHookThrown(std::initializer_list<const char*> hooks) const
    {
        const std::string name = std::get<const char*>(GetParam());
        return model.hasThrown && std::ranges::find(hooks, name) != hooks.end();
    }

    std::atomic<bool> isClosed{false};
    Kes::ScopedConnection closed = model.signalClosed.connect([this] { isClosed = true; });
    Kes::ScopedConnection status =
        hardware().signalStatusChanged.connect([this](const char*) { model.failIn("status"); });
    Kes::ScopedConnection running =
        hardware().signalRunningChanged.connect([this](bool) { model.failIn("hardwareRunning"); });
};

INSTANTIATE_TEST_SUITE_P(
    Everywhere, ThrowingEnds,
    testing::Combine(testing::Values("getCanStart", "usesLocalHardware", "onPrepareStart",
                                     "onPrepareHardware", "isSupportedHardwareSync", "onStart", "onStop",
                                     "onFinishHardware", "onFinished", "onClosing", "onHardwareChanged",
                                     "hardwareChanged", "canStart", "canStop", "running", "finished(true)",
                                     "finished(false)", "state", "message: told", "closing", "closed",
                                     "status", "hardwareRunning"),
                     testing::Values(From::Announcing, From::Preparing, From::Running, From::Stopping,
                                     From::Finishing, From::ShuttingDown, From::Closing)));

TEST_P(ThrowingEnds, LeaveTheOutputsOffAndTheProgramClosed)
{
    reach(From::Announcing);
    const bool isStarted = startSafely();
    if (isStarted)
        run();
    reach(From::Closing);
    model.close();
    reach(From::ShuttingDown);
    model.bodyDoor.open();
    EXPECT_TRUE(waitFor([this] { return isClosed.load(); }));
    EXPECT_FALSE(first.isPuttingOut() || first->isWorking());
    EXPECT_FALSE(model.isRunning() || model.isOutputStarted());
    EXPECT_EQ(countFinishes(), isStarted ? 1U : 0U);
    EXPECT_EQ(model.count("onStop"), model.has("onStart") ? 1U : 0U);
    const auto runHooks = {"onStart", "onStop", "onFinishHardware", "onFinished"};
    EXPECT_TRUE(model.hasRunFailed() || !hasHookThrown(runHooks));
    EXPECT_TRUE(texts.has(std::string("thrown by ") + std::get<const char*>(GetParam())) ||
                !(hasHookThrown(runHooks) || hasHookThrown({"onPrepareHardware", "onClosing"})));
    model.throwing = "";
    EXPECT_TRUE(model.getCanStart());
    model.take();
}

} // namespace
