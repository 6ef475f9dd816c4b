#include "ServingQueue.h"

#include <KesCommon/Signal.h>
#include <KesCommon/SignalGate.h>
#include <KesCommon/ThreadWaits.h>
#include <KesCommon/Worker.h>

#include "support/LoggedTexts.h"

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <memory>
#include <pthread.h>
#include <stdexcept>
#include <thread>
#include <vector>

using Kes::Worker;
using KesTest::ServingQueue;

namespace {

TEST(Worker, runsItsWorkUnderItsNameUntilTheEndThatIsWaitedFor)
{
    EXPECT_FALSE(Worker().isRunning());
    std::string name;
    std::promise<void> leave;
    Worker first("Kes_Скамья", [&, held = std::make_shared<int>(0)] {
        std::array<char, 16> kept{};
        pthread_getname_np(pthread_self(), kept.data(), kept.size());
        name = kept.data();
        leave.get_future().wait();
    });
    Worker worker(std::move(first));
    EXPECT_TRUE(worker.isRunning());
    leave.set_value();
    worker.wait();
    EXPECT_FALSE(worker.isRunning() || first.isRunning());
    EXPECT_EQ(name, "Kes_Скамь") << "the whole characters of the first 15 bytes";
    worker.wait();

    std::atomic<int> ended{0};
    for (int i = 0; i < 3; ++i) {
        worker = Worker("Kes_Bench", [&] { ++ended; });
        EXPECT_GE(ended, i) << "of those that have been replaced";
    }
    worker = {};
    EXPECT_EQ(ended, 3);
}

TEST(Worker, emitsAndAsksTheServingThreadUntilItsEnd)
{
    for (const bool serving : {true, false}) {
        const auto queue = serving ? std::make_unique<ServingQueue>() : nullptr;
        Kes::Signal<void()> signal;
        bool served = false;
        Worker worker("Kes_Bench", [&] {
            signal.emit();
            if (queue)
                queue->wait([&] { served = true; });
        });
        Kes::SignalGate::Guard outer;
        Kes::SignalGate::Guard inner;
        worker.wait();
        EXPECT_TRUE(Kes::SignalGate::isHeldByThisThread());
        EXPECT_EQ(served, serving);
    }
}

TEST(Worker, whatItThrowsGoesToTheLog)
{
    KesTest::LoggedTexts logged;
    Worker("Kes_Bench", [] { throw std::runtime_error("worker fault"); }).wait();
    EXPECT_THAT(logged.take(), testing::ElementsAre(testing::HasSubstr("worker fault")));
}

TEST(Worker, mayBeWaitedForAndDestroyedInItsOwnWork)
{
    auto holder = std::make_shared<Worker>();
    std::promise<void> start;
    std::promise<bool> wentOn;
    *holder = Worker("Kes_Bench", [&, started = start.get_future().share()] {
        started.wait();
        holder->wait();
        holder.reset();
        wentOn.set_value(true);
    });
    start.set_value();
    EXPECT_TRUE(wentOn.get_future().get());
}

TEST(Worker, aServedFunctionMayWaitForItAndReplaceIt)
{
    ServingQueue queue;
    auto worker = std::make_unique<Worker>();
    *worker = Worker("Kes_Bench", [&] {
        queue.post([&] {
            worker->wait();
            worker.reset();
        });
        queue.wait([] {});
    });
    worker->wait();
    EXPECT_EQ(worker, nullptr);
}

/// A thread that has been waited for may be followed by another one with its id.
TEST(Worker, whenItHasEndedNobodyCountsAsWaitingForItsThread)
{
    std::promise<void> leave;
    std::promise<std::thread::id> begun;
    Worker worker("Kes_Worker", [&] {
        begun.set_value(std::this_thread::get_id());
        leave.get_future().wait();
    });
    const auto id = begun.get_future().get();
    std::thread waiter([&] {
        const Kes::SignalGate::Guard gate;
        worker.wait();
    });
    while (!Kes::ThreadWaits::isWaitingFor(waiter.get_id(), id))
        std::this_thread::yield();
    {
        // Without the gate the waiter does not go on.
        const Kes::SignalGate::Guard gate;
        leave.set_value();
        while (worker.isRunning())
            std::this_thread::yield();
        EXPECT_FALSE(Kes::ThreadWaits::isWaitingFor(waiter.get_id(), id));
    }
    waiter.join();
}

} // namespace
