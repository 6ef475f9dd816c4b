// Runs whose devices, slots or hooks fail at the worst moment: the run ends in order, its outputs are off,
// and the user is told once.

#include "RunFaults.h"

#include <glibmm/main.h>

#include <cstdlib>
#include <future>
#include <iostream>
#include <stdexcept>

namespace KesTest {

/// Its outputs must go off although it does not do it.
class ForgetfulModel : public RecordingModel {
protected:
    void _onFinishHardware() override { throw std::runtime_error("thrown by the hook"); }
};

namespace {

using namespace std::chrono_literals;
using KesDevice::HardwareControl;
using KesDevice::HardwareManager;
using testing::ElementsAre;
using testing::HasSubstr;

// Faults of devices while a run begins

class FaultAtTheStart : public RunFaults<RecordingModel> {
protected:
    /// The fault comes when the first device is on and the second has not answered yet.
    void startWith(const std::function<void()>& fail)
    {
        second.addTo(hardware());
        second->setAnswerDelay(150ms);
        start();
        ASSERT_TRUE(waitFor([this] { return first.countSwitchedOn() == 1; }));
        fail();
        EXPECT_TRUE(waitForFinish(3s)) << "nothing stops the run";
        first->clearFaults();
        EXPECT_FALSE(hardware().isOutputRunning());
    }
};

TEST_F(FaultAtTheStart, ALostDeviceEndsTheRunWithOneText)
{
    startWith([this] { first->simulateConnectionLoss(); });
    EXPECT_THAT(texts.take(), testing::SizeIs(1));
}

TEST_F(FaultAtTheStart, AFaultBetweenThePreparationAndTheRunStopsTheRun)
{
    model.prepareHardware = [this] {
        const bool isPrepared = model.prepareRealHardware();
        first->simulateOverload(0);
        while (texts.count("Fault KESTO-3 No. 00001\nIA - Overload") == 0)
            std::this_thread::yield();
        return isPrepared;
    };
    start();
    EXPECT_TRUE(waitForFinish(3s)) << "nothing stops the run";
    first->clearFaults();
    EXPECT_THAT(texts.take(), testing::SizeIs(1));
}

TEST_F(FaultAtTheStart, ALossBetweenTheTwoStepsOfThePreparationGivesOneText)
{
    hardware().setIsStatusReported(true);
    Kes::ScopedConnection ended = hardware().signalStatusChanged.connect([&](const char* text) {
        if (*text || !first.isReached() || first.countSwitchedOn() > 0)
            return;
        ended.disconnect();
        first->simulateConnectionLoss();
        const Kes::SignalGate::Release gate;
        std::this_thread::sleep_for(100ms);
    });
    start();
    EXPECT_TRUE(waitForFinish(3s));
    EXPECT_THAT(texts.take(), ElementsAre(HasSubstr("10.0.7.1")));
}

using FaultInARun = RunFaults<RecordingModel>;

TEST_F(FaultInARun, NonsenseStopsTheRunWithOneText)
{
    startAndRun();
    first->setNonsense(true);
    EXPECT_TRUE(waitForFinish(3s)) << "nothing stops the run";
    first->setNonsense(false);
    EXPECT_FALSE(first.isPuttingOut());
    EXPECT_THAT(texts.take(), testing::ElementsAre(testing::HasSubstr("10.0.7.1")));
}

TEST_F(FaultAtTheStart, AnOverloadEndsTheRunWithOneText)
{
    startWith([this] { first->simulateOverload(0); });
    EXPECT_THAT(texts.take(), testing::SizeIs(1));
}

class SilenceAtTheStart : public RunFaults<RecordingModel> {
protected:
    SilenceAtTheStart() { first->setTimeout(200ms); }

    void expectOneTextWithTheAddress()
    {
        ASSERT_TRUE(waitForFinish());
        EXPECT_THAT(texts.take(), ElementsAre(HasSubstr(first.getAddress())));
        EXPECT_TRUE(model.has("finished(false)"));
    }
};

TEST_F(SilenceAtTheStart, OfAConnectedDeviceGivesOneText)
{
    ASSERT_TRUE(hardware().prepare());
    first->setSilent(true);
    start();
    expectOneTextWithTheAddress();
}

TEST_F(SilenceAtTheStart, OfADeviceNeverHeardOfGivesOneText)
{
    first->setSilent(true);
    start();
    expectOneTextWithTheAddress();
}

TEST_F(SilenceAtTheStart, BeforeTheIdentificationGivesOneText)
{
    first->setAnswerDelay(50ms);
    start();
    ASSERT_TRUE(waitFor([this] { return first.isReached(); }));
    first->setSilent(true);
    expectOneTextWithTheAddress();
}

// Hooks and slots that throw

class ForgetfulRun : public RunFaults<ForgetfulModel> {};

TEST_F(ForgetfulRun, AnExceptionInTheFinishingHookLeavesNoOutputOn)
{
    startAndRun();
    model.stopTest();
    ASSERT_TRUE(waitForFinish());
    EXPECT_TRUE(texts.has("thrown by the hook"));
    EXPECT_FALSE(hardware().isOutputRunning() || first.isPuttingOut());
}

/// An exception on the start thread ends the process, so each of these runs happens in one of its own.
class ThrowingSlotDeathTest : public RunFaults<RecordingModel> {
protected:
    ThrowingSlotDeathTest()
    {
        testing::GTEST_FLAG(death_test_style) = "threadsafe";
        hardware().setIsStatusReported(true);
    }

    static void fail() { throw std::runtime_error("thrown by a slot"); }

    /// Expectations of a child process are not shown; this is.
    void check(bool isTrue, const char* text)
    {
        if (isTrue)
            return;
        std::cerr << "Not so: " << text << '\n';
        isInOrder = false;
    }
    void begin()
    {
        check(model.startTest(), "the run begins");
        check(waitFor([this] { return model.has("onStart") || countFinishes() > 0; }, 5s), "the body runs");
    }
    void perform(const std::function<void()>& action)
    {
        try {
            action();
        } catch (const std::exception& error) {
            check(false, "it keeps the exception of the slot");
        }
    }
    void stop()
    {
        perform([this] { model.stopTest(); });
    }
    /// The child process tells by its end whether all was as it should be.
    [[noreturn]] void endProcess()
    {
        check(waitForFinish(5s), "the run ends");
        // What comes too often comes soon.
        waitFor([this] { return countFinishes() > 1; }, 50ms);
        check(countFinishes() == 1, "it ends once");
        check(model.count("onStop") == 1, "it is stopped");
        check(model.count("onFinished") == 1, "its end is told to the program");
        check(!model.isRunning(), "it is not running any more");
        check(!hardware().isOutputRunning() && !first.isPuttingOut(), "the outputs are off");
        check(texts.has("thrown by a slot"), "the user is told");
        std::_Exit(isInOrder ? 0 : 1);
    }

    [[noreturn]] void runWithRunningChanged()
    {
        model.signalRunningChanged.connect([] { fail(); });
        begin();
        stop();
        endProcess();
    }
    [[noreturn]] void runWithFinished()
    {
        model.signalFinished.connect([](bool) { fail(); });
        begin();
        stop();
        endProcess();
    }
    [[noreturn]] void stopWithCanStopChanged()
    {
        begin();
        model.signalCanStopChanged.connect([] { fail(); });
        stop();
        endProcess();
    }
    [[noreturn]] void closeWithCanStopChanged()
    {
        begin();
        model.signalCanStopChanged.connect([] { fail(); });
        perform([this] { model.close(); });
        check(model.count("onClosing") == 1, "the program hears of its closing");
        check(waitFor([this] { return model.has("closed"); }, 5s), "it is closed");
        endProcess();
    }
    [[noreturn]] void runWithStatusChanged()
    {
        hardware().signalStatusChanged.connect([](const char*) { fail(); });
        begin();
        stop();
        endProcess();
    }
    [[noreturn]] void runWithHardwareRunningChanged()
    {
        hardware().signalRunningChanged.connect([](bool) { fail(); });
        begin();
        stop();
        endProcess();
    }

    bool isInOrder = true;
};

const testing::ExitedWithCode inOrder(0);

TEST_F(ThrowingSlotDeathTest, OfRunningChangedHindersNoRun)
{
    EXPECT_EXIT(runWithRunningChanged(), inOrder, "");
}

TEST_F(ThrowingSlotDeathTest, OfFinishedFinishesOnce)
{
    EXPECT_EXIT(runWithFinished(), inOrder, "");
}

TEST_F(ThrowingSlotDeathTest, OfCanStopChangedHindersNoStop)
{
    EXPECT_EXIT(stopWithCanStopChanged(), inOrder, "");
}

TEST_F(ThrowingSlotDeathTest, OfCanStopChangedHindersNoClosing)
{
    EXPECT_EXIT(closeWithCanStopChanged(), inOrder, "");
}

TEST_F(ThrowingSlotDeathTest, OfTheHardwaresStatusHindersNoRun)
{
    EXPECT_EXIT(runWithStatusChanged(), inOrder, "");
}

TEST_F(ThrowingSlotDeathTest, OfTheHardwaresRunningChangedHindersNoRun)
{
    EXPECT_EXIT(runWithHardwareRunningChanged(), inOrder, "");
}

// The GUI thread

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int slowness = 4;
#else
constexpr int slowness = 1;
#endif

/// The longest time between two turns of the main loop so far. GUI thread.
class TurnWatch {
public:
    TurnWatch()
        : _connection(Glib::signal_timeout().connect([this] { return _turn(); }, 1, Glib::PRIORITY_HIGH))
    {}
    ~TurnWatch() { _connection.disconnect(); }
    TurnWatch(const TurnWatch&) = delete;
    TurnWatch& operator=(const TurnWatch&) = delete;

    std::chrono::milliseconds getLongest() const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(_longest);
    }

private:
    using Clock = std::chrono::steady_clock;

    bool _turn()
    {
        const auto now = Clock::now();
        _longest = std::max(_longest, now - _last);
        _last = now;
        return true;
    }

    Clock::time_point _last = Clock::now();
    Clock::duration _longest{0};
    sigc::connection _connection;
};

class GuiThreadKeepsTurning : public RunFaults<RecordingModel> {
protected:
    GuiThreadKeepsTurning() { first->setTimeout(500ms); }

    /// Until the silent device is off and nobody waits for it any more.
    void expectTurns(const std::function<void()>& action)
    {
        const auto before = HardwareControl::share();
        TurnWatch watch;
        action();
        EXPECT_TRUE(
            waitFor([&] { return !before->isBusy() && !first.isReached() && !first.isPuttingOut(); }));
        turnMainLoop(5);
        // A wait for the device would take its time-out; a busy machine alone may take tens of milliseconds.
        EXPECT_LE(watch.getLongest().count(), slowness * 200) << "milliseconds";
    }
};

TEST_F(GuiThreadKeepsTurning, WhenASilentRunningDeviceIsDisconnected)
{
    switchOn();
    first->setSilent(true);
    expectTurns([this] { model.beginDisconnect(); });
}

TEST_F(GuiThreadKeepsTurning, WhenARunWithASilentDeviceIsDisconnected)
{
    startAndRun();
    first->setSilent(true);
    expectTurns([this] { model.beginDisconnect(); });
}

TEST_F(GuiThreadKeepsTurning, WhenASilentDeviceIsDisconnectedDuringAPreparation)
{
    first->setSilent(true);
    auto preparing = std::async(std::launch::async, [this] { return hardware().prepare(); });
    ASSERT_TRUE(waitFor([this] { return hardware().isBusy(); }));
    expectTurns([this] { model.beginDisconnect(); });
    (void)preparing.get();
}

TEST_F(GuiThreadKeepsTurning, WhenASilentRunningConfigurationIsReplaced)
{
    switchOn();
    first->setSilent(true);
    auto next = HardwareManager::create();
    expectTurns([&] { model.setHardware(next, true); });
}

} // namespace
} // namespace KesTest
