#include "support/GuiTest.h"

#include <KesCommon/Log.h>
#include <KesCommon/Signal.h>
#include <KesCommon/ThreadHelper.h>
#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/UpdateView.h>
#include <KesCommonView/UpdateViewGuard.h>

#include <glibmm/main.h>
#include <gtkmm/messagedialog.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <thread>

namespace {

using KesTest::runPendingEvents;
using KesTest::waitFor;

auto& presenter = Kes::ApplicationDispatcherPresenter::getInstance();

class ApplicationDispatcherTest : public KesTest::GuiTest {};

TEST_F(ApplicationDispatcherTest, runsPostsOfEachThreadInOrderOnTheGuiThread)
{
    constexpr int count = 20000;
    std::array<int, 2> next{};
    int faults = 0;
    auto post = [&](std::size_t who) {
        for (int i = 0; i < count; ++i)
            Kes::beginUpdateView([&, who, i] {
                faults += next[who]++ == i && Kes::ApplicationDispatcher::getInstance().isGuiThread() ? 0 : 1;
            });
    };
    std::thread first(post, 0);
    std::thread second(post, 1);
    EXPECT_TRUE(waitFor([&] { return next[0] == count && next[1] == count; }));
    first.join();
    second.join();
    EXPECT_EQ(faults, 0);
}

TEST_F(ApplicationDispatcherTest, postOnTheGuiThreadIsLaterAndWaitIsAtOnce)
{
    std::string order;
    Kes::beginUpdateView([&] { order += "posted "; });
    Kes::waitUpdateView([&] { order += "waited "; });
    EXPECT_EQ(order, "waited ");
    runPendingEvents();
    EXPECT_EQ(order, "waited posted ");
}

TEST_F(ApplicationDispatcherTest, waitReturnsAfterEarlierPostsOfItsThread)
{
    std::atomic<bool> done{false};
    std::string order;
    std::string seen;
    std::thread worker([&] {
        Kes::beginUpdateView([&] { order += "a"; });
        Kes::waitUpdateView([&] { order += "b"; });
        seen = order;
        done = true;
    });
    EXPECT_TRUE(waitFor([&] { return done.load(); }));
    worker.join();
    EXPECT_EQ(seen, "ab");
}

TEST_F(ApplicationDispatcherTest, exceptionsReachTheWaiterOrTheLogAndTheQueueGoesOn)
{
    std::vector<std::string> logged;
    auto previous = KesLog::Log::setObserver([&](auto, const std::string& text) { logged.push_back(text); });
    std::string caught;
    std::atomic<bool> done{false};
    std::thread worker([&] {
        Kes::beginUpdateView([] { throw std::runtime_error("posted fault"); });
        try {
            Kes::waitUpdateView([] { throw std::runtime_error("waited fault"); });
        } catch (const std::runtime_error& error) {
            caught = error.what();
        }
        Kes::waitUpdateView([&] { done = true; });
    });
    EXPECT_TRUE(waitFor([&] { return done.load(); }));
    worker.join();
    KesLog::Log::setObserver(std::move(previous));
    EXPECT_EQ(caught, "waited fault");
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_THAT(logged[0], testing::HasSubstr("posted fault"));
    EXPECT_THROW(Kes::waitUpdateView([] { throw std::logic_error("here"); }), std::logic_error);
}

TEST_F(ApplicationDispatcherTest, queueGoesOnInsideTheLoopOfADialog)
{
    std::atomic<bool> waited{false};
    std::thread worker;
    bool inside = false;
    Kes::beginUpdateView([&] {
        worker = std::thread([&] { Kes::waitUpdateView([&] { waited = true; }); });
        Gtk::MessageDialog box("Open", false, Gtk::MESSAGE_INFO, Gtk::BUTTONS_OK);
        auto close = Glib::signal_timeout().connect(
            [&] {
                if (waited)
                    box.response(Gtk::RESPONSE_OK);
                return !waited;
            },
            5);
        box.run();
        inside = waited;
    });
    EXPECT_TRUE(waitFor([&] { return inside; }));
    worker.join();
}

TEST_F(ApplicationDispatcherTest, joiningAThreadThatWaitsForTheGuiThreadEnds)
{
    int runs = 0;
    std::thread worker([&] {
        for (int i = 0; i < 100; ++i)
            Kes::waitUpdateView([&] { ++runs; });
    });
    Kes::ThreadHelper::join(worker);
    EXPECT_EQ(runs, 100);
}

TEST_F(ApplicationDispatcherTest, unregisteringReleasesWaitersAndDropsTheRest)
{
    bool ran = false;
    auto captured = std::make_shared<int>(0);
    std::atomic<int> released{0};
    std::atomic<int> started{0};
    std::vector<std::thread> workers;
    for (int i = 0; i < 3; ++i)
        workers.emplace_back([&, captured] {
            Kes::beginUpdateView([&, captured] { ran = true; });
            ++started;
            Kes::waitUpdateView([&, captured] { ran = true; });
            ++released;
        });
    while (started < 3)
        std::this_thread::yield();
    presenter.unregisterDispatcher();
    for (auto& worker : workers)
        worker.join();
    EXPECT_EQ(released, 3);
    EXPECT_EQ(captured.use_count(), 1);
    std::thread late([&] { Kes::waitUpdateView([&] { ran = true; }); });
    late.join();
    presenter.registerDispatcher();
    runPendingEvents();
    EXPECT_FALSE(ran);
    Kes::beginUpdateView([&] { ran = true; });
    EXPECT_TRUE(waitFor([&] { return ran; }));
}

// A device thread emits, its slot waits for the GUI thread, and what runs there connects and emits.
TEST_F(ApplicationDispatcherTest, functionThatIsWaitedForRunsWithTheGateOfTheWaiter)
{
    Kes::Signal<void(int)> outer;
    Kes::Signal<void()> inner;
    int innerCalls = 0;
    std::atomic<bool> keptGate{false};
    outer.connect([&](int) {
        Kes::waitUpdateView([&] {
            inner.connect([&] { ++innerCalls; });
            inner.emit();
        });
        keptGate = Kes::SignalGate::isHeldByThisThread();
    });
    std::thread device([&] { outer.emit(1); });
    EXPECT_TRUE(waitFor([&] { return keptGate.load(); }));
    device.join();
    EXPECT_EQ(innerCalls, 1);
    EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread());

    // The same while the GUI thread itself is waiting for the gate.
    std::atomic<bool> emitting{false};
    outer.connect([&](int value) {
        emitting = value == 2;
        Kes::waitUpdateView([&] { inner.emit(); });
    });
    std::thread other([&] { outer.emit(2); });
    while (!emitting)
        runPendingEvents();
    {
        Kes::SignalGate::Guard guard;
    }
    Kes::ThreadHelper::join(other);
    EXPECT_EQ(innerCalls, 1 + 2 + 2);
}

TEST_F(ApplicationDispatcherTest, floodLeavesTimersTheirTurn)
{
    std::atomic<bool> stop{false};
    std::atomic<long> queued{0};
    std::thread flood([&] {
        while (!stop) {
            if (queued < 50000) {
                ++queued;
                Kes::beginUpdateView([&] { --queued; });
            }
        }
    });
    int ticks = 0;
    auto timer = Glib::signal_timeout().connect([&] { return ++ticks < 20; }, 10);
    EXPECT_TRUE(waitFor([&] { return ticks == 20; }));
    stop = true;
    flood.join();
    EXPECT_TRUE(waitFor([&] { return queued == 0; }));
}

class UpdateViewGuardTest : public KesTest::GuiTest {};

TEST_F(UpdateViewGuardTest, latePostsOfADeadPresenterAreDropped)
{
    auto guard = std::make_unique<Kes::UpdateViewGuard>();
    int runs = 0;
    guard->safeBeginUpdateView([&] { ++runs; });
    runPendingEvents();
    EXPECT_EQ(runs, 1);
    guard->safeBeginUpdateView([&] { ++runs; });
    guard.reset();
    runPendingEvents();
    EXPECT_EQ(runs, 1);
}

TEST_F(UpdateViewGuardTest, waitEndsWhenThePresenterHasDied)
{
    auto guard = std::make_unique<Kes::UpdateViewGuard>();
    std::atomic<bool> waiting{false};
    std::atomic<bool> ended{false};
    bool ran = false;
    std::thread worker([&] {
        // Queued before the wait: the presenter dies when the wait is already in the queue.
        Kes::beginUpdateView([&] {
            EXPECT_TRUE(waitFor([&] { return waiting.load(); }));
            guard.reset();
        });
        const auto& used = *guard;
        waiting = true;
        used.safeWaitUpdateView([&] { ran = true; });
        ended = true;
    });
    EXPECT_TRUE(waitFor([&] { return ended.load(); }));
    worker.join();
    EXPECT_EQ(guard, nullptr);
}

TEST_F(UpdateViewGuardTest, updateIsAtOnceOnTheGuiThreadAndQueuedElsewhere)
{
    Kes::UpdateViewGuard guard;
    bool ran = false;
    guard.safeUpdateView([&] { ran = true; });
    EXPECT_TRUE(ran);
    std::atomic<bool> onGui{false};
    std::thread([&] {
        guard.safeUpdateView([&] { onGui = Kes::ApplicationDispatcher::getInstance().isGuiThread(); });
    }).join();
    EXPECT_FALSE(onGui);
    EXPECT_TRUE(waitFor([&] { return onGui.load(); }));
}

} // namespace
