#include "support/GuiTest.h"

#include <KesCommon/Log.h>
#include <KesCommon/Signal.h>
#include <KesCommon/SignalGate.h>
#include <KesCommon/WaitCondition.h>
#include <KesCommon/Worker.h>
#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/UpdateView.h>
#include <KesCommonView/UpdateViewGuard.h>

#include <array>
#include <atomic>
#include <future>
#include <mutex>
#include <numeric>
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
        Kes::waitUpdateView([&, who] { faults += next[who] == count ? 0 : 1; });
    };
    Kes::Worker first("Kes_Bench", [&] { post(0); });
    Kes::Worker second("Kes_Bench", [&] { post(1); });
    first.wait();
    second.wait();
    EXPECT_EQ(next, (std::array{count, count}));
    EXPECT_EQ(faults, 0);
}

TEST_F(ApplicationDispatcherTest, exceptionsReachTheWaiterOrTheLogAndTheQueueGoesOn)
{
    std::vector<std::string> logged;
    auto previous = KesLog::Log::setObserver([&](auto, const std::string& text) { logged.push_back(text); });
    bool goesOn = false;
    Kes::Worker worker("Kes_Bench", [&] {
        Kes::beginUpdateView([] { throw std::runtime_error("posted fault"); });
        EXPECT_THROW(Kes::waitUpdateView([] { throw std::logic_error("waited"); }), std::logic_error);
        Kes::waitUpdateView([&] { goesOn = true; });
    });
    worker.wait();
    KesLog::Log::setObserver(std::move(previous));
    EXPECT_TRUE(goesOn);
    EXPECT_THAT(logged, testing::ElementsAre(testing::HasSubstr("posted fault")));
    EXPECT_THROW(Kes::waitUpdateView([] { throw std::logic_error("here"); }), std::logic_error);
}

TEST_F(ApplicationDispatcherTest, queueGoesOnInOrderInsideTheLoopOfADialog)
{
    constexpr std::size_t count = 2000;
    const auto loop = Glib::MainLoop::create();
    std::thread worker;
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < count; ++i)
        Kes::beginUpdateView([&, i] {
            order.push_back(i);
            if (i == 100) {
                worker = std::thread([&] { Kes::waitUpdateView([&] { loop->quit(); }); });
                loop->run();
            }
        });
    EXPECT_TRUE(waitFor([&] { return order.size() == count; }));
    worker.join();
    std::vector<std::size_t> expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST_F(ApplicationDispatcherTest, unregisteringReleasesWaitersAndDropsTheRest)
{
    bool ran = false;
    auto captured = std::make_shared<int>(0);
    std::atomic<int> started{0};
    {
        const auto post = [&, captured] {
            Kes::beginUpdateView([&, captured] { ran = true; });
            ++started;
            Kes::waitUpdateView([&, captured] { ran = true; });
        };
        std::jthread one(post);
        std::jthread two(post);
        while (started < 2)
            std::this_thread::yield();
        presenter.unregisterDispatcher();
    }
    EXPECT_EQ(captured.use_count(), 1);
    std::thread([&] { Kes::waitUpdateView([&] { ran = true; }); }).join();
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
}

// A wait on the GUI thread has emptied the queue and sleeps; each post has to wake it.
TEST_F(ApplicationDispatcherTest, postsWakeAWaitOnTheGuiThreadWithoutAMainLoop)
{
    std::mutex mutex;
    Kes::WaitCondition condition;
    int served = 0;
    Kes::Worker worker("Kes_Bench", [&] {
        for (int i = 0; i < 2000; ++i)
            Kes::waitUpdateView([&] { ++served; });
        Kes::beginUpdateView([&] { ++served; });
    });
    std::unique_lock lock(mutex);
    EXPECT_TRUE(condition.waitFor(lock, std::chrono::seconds(10), [&] { return served == 2001; }));
    lock.unlock();
    worker.wait();
    bool inLoop = false;
    Kes::beginUpdateView([&] { inLoop = true; });
    EXPECT_TRUE(waitFor([&] { return inLoop; })) << "the main loop goes on with the queue afterwards";
}

TEST_F(ApplicationDispatcherTest, aQueueThatIsNeverEmptyLeavesTimersTheirTurnAndKeepsNoWaitFromItsEnd)
{
    std::atomic<bool> stop{false};
    Kes::Signal<void()> signal;
    Kes::Worker emitter("Kes_Bench", [&] {
        while (!stop)
            signal.emit();
    });
    int ticks = 0;
    // Not for ever.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    const std::function<void()> again = [&] {
        if (ticks < 20 && std::chrono::steady_clock::now() < end)
            Kes::beginUpdateView(again);
    };
    again();
    for (int i = 0; i < 20; ++i) {
        Kes::Worker("Kes_Bench", [] {}).wait();
        const Kes::SignalGate::Guard gate;
    }
    EXPECT_LT(std::chrono::steady_clock::now(), end) << "a wait has served the queue for ever";
    stop = true;
    emitter.wait();
    auto timer = Glib::signal_timeout().connect([&] { return ++ticks < 20; }, 10);
    EXPECT_TRUE(waitFor([&] { return ticks == 20; }, std::chrono::seconds(4)));
    runPendingEvents();
}

TEST_F(ApplicationDispatcherTest, aCutWaitsForASlotThatWaitsForTheGuiThreadUnlessItIsCutThere)
{
    Kes::Signal<void()> signal;
    std::promise<void> entered;
    bool ran = false;
    std::atomic<bool> ended{false};
    auto connection = signal.connect([&] {
        const Kes::SignalGate::Release release;
        entered.set_value();
        Kes::waitUpdateView([&] { ran = true; });
        ended = true;
    });
    Kes::Worker first("Kes_Bench", [&] { signal.emit(); });
    entered.get_future().wait();
    connection.disconnect();
    EXPECT_TRUE(ran && ended) << "the cut has served the function and waited for the slot";

    connection = signal.connect([&] { Kes::waitUpdateView([&] { connection.disconnect(); }); });
    Kes::Worker second("Kes_Bench", [&] { signal.emit(); });
    second.wait();
    EXPECT_FALSE(connection.connected());
}

TEST_F(ApplicationDispatcherTest, latePostsOfADeadPresenterAreDropped)
{
    auto guard = std::make_unique<Kes::UpdateViewGuard>();
    int runs = 0;
    guard->safeBeginUpdateView([&] { ++runs; });
    runPendingEvents();
    std::thread([&] { guard->safeUpdateView([&] { runs += 10; }); }).join();
    EXPECT_EQ(runs, 1);
    guard->safeUpdateView([&] { ++runs; });
    EXPECT_EQ(runs, 2) << "at once on the GUI thread";
    guard.reset();
    runPendingEvents();
    EXPECT_EQ(runs, 2);
}

TEST_F(ApplicationDispatcherTest, waitEndsWhenThePresenterHasDied)
{
    auto guard = std::make_unique<Kes::UpdateViewGuard>();
    std::atomic<bool> waiting{false};
    Kes::Worker worker("Kes_Bench", [&] {
        // Queued before the wait: the presenter dies when the wait is already in the queue.
        Kes::beginUpdateView([&] {
            EXPECT_TRUE(waitFor([&] { return waiting.load(); }));
            guard.reset();
        });
        const auto& used = *guard;
        waiting = true;
        used.safeWaitUpdateView([] {});
    });
    worker.wait();
    EXPECT_EQ(guard, nullptr);
}

} // namespace
