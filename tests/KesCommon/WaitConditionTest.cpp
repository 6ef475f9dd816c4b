#include "ServingQueue.h"

#include <KesCommon/SignalGate.h>
#include <KesCommon/ThreadWaits.h>
#include <KesCommon/WaitCondition.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>

using Kes::SignalGate;
using Kes::ThreadWaits;
using KesTest::ServingQueue;
using namespace std::chrono_literals;

namespace {

class Waiting : public testing::Test {
protected:
    void set(bool& flag)
    {
        std::lock_guard guard(mutex);
        flag = true;
        condition.notifyAll();
    }

    std::mutex mutex;
    std::unique_lock<std::mutex> lock{mutex};
    Kes::WaitCondition condition;
    bool done = false;
};

/// Each test once on the serving thread and once on an ordinary one.
class WaitConditionTest : public Waiting, public testing::WithParamInterface<bool> {
protected:
    const std::unique_ptr<ServingQueue> queue = GetParam() ? std::make_unique<ServingQueue>() : nullptr;
};

INSTANTIATE_TEST_SUITE_P(OnTheThread, WaitConditionTest, testing::Bool(),
                         [](const auto& parameter) { return parameter.param ? "Serving" : "Ordinary"; });

TEST_P(WaitConditionTest, leavesGateAndQueueAloneWhenThePredicateHoldsAtOnce)
{
    SignalGate::Guard gate;
    bool served = false;
    if (queue)
        queue->post([&] { served = true; });
    condition.wait(lock, [] { return true; });
    EXPECT_TRUE(condition.waitFor(lock, 0ms, [] { return SignalGate::isHeldByThisThread(); }));
    EXPECT_FALSE(served);
}

TEST_P(WaitConditionTest, letsGoOfTheGateHoweverDeepAndTakesItBackWithoutTheLock)
{
    SignalGate::Guard outer;
    std::optional<SignalGate::Guard> inner(std::in_place);
    std::jthread other([&] {
        const SignalGate::Guard gate;
        set(done);
        // The waiting thread is on its way back to the gate now, and must not hold its lock.
        std::lock_guard guard(mutex);
    });
    condition.wait(lock, [&] { return done; });
    EXPECT_TRUE(lock.owns_lock() && SignalGate::isHeldByThisThread());
    inner.reset();
    EXPECT_TRUE(SignalGate::isHeldByThisThread()) << "by the outer one";
}

TEST_P(WaitConditionTest, anIdleWaitSleepsUntilItsTime)
{
    int asked = 0;
    const auto end = std::chrono::steady_clock::now() + 100ms;
    EXPECT_FALSE(condition.waitUntil(lock, end, [&] { return ++asked < 0; }));
    EXPECT_GE(std::chrono::steady_clock::now(), end);
    EXPECT_LE(asked, 6);
    EXPECT_LE(queue ? queue->looks : 0, 3);
}

TEST_P(WaitConditionTest, noNotificationIsLost)
{
    // With a flag that no lock guards: the notification may come between the look and the sleep.
    constexpr int rounds = 5000;
    std::atomic<int> turn{0};
    Kes::WaitCondition answered;
    std::jthread other([&] {
        std::mutex own;
        std::unique_lock ownLock(own);
        for (int i = 0; i < rounds; ++i) {
            answered.wait(ownLock, [&] { return turn == 2 * i + 1; });
            ++turn;
            condition.notifyAll();
        }
    });
    for (int i = 0; i < rounds; ++i) {
        ++turn;
        answered.notifyAll();
        ASSERT_TRUE(condition.waitFor(lock, 10s, [&] { return turn == 2 * i + 2; }));
    }
}

class ServingWait : public Waiting {
protected:
    std::unique_ptr<ServingQueue> queue = std::make_unique<ServingQueue>();
};

TEST_F(ServingWait, servesWhatComesMeanwhileAndMayWaitInside)
{
    constexpr int rounds = 2000;
    int served = 0;
    std::jthread other([&] {
        for (int i = 0; i < rounds; ++i)
            queue->wait([&] { ++served; });
        queue->wait([&] {
            std::jthread nested([&] { queue->wait([&] { ++served; }); });
            std::unique_lock inner(mutex);
            condition.wait(inner, [&] { return served == rounds + 1; });
        });
        set(done);
    });
    condition.wait(lock, [&] { return done; });
    EXPECT_EQ(served, rounds + 1);
    EXPECT_LE(queue->looks, 3 * rounds + 10) << "about two looks for each function";
}

TEST_F(ServingWait, aServedFunctionMayEndTheService)
{
    std::jthread other([&] {
        queue->wait([] { Kes::WaitService::uninstall(); });
        set(done);
    });
    condition.wait(lock, [&] { return done; });
    EXPECT_FALSE(Kes::WaitService::isServingThread());
}

TEST(ThreadWaits, followsChainsAndRefusesToCloseACircle)
{
    const auto self = std::this_thread::get_id();
    std::promise<void> leave;
    auto left = leave.get_future().share();
    std::jthread second([&] { left.wait(); });
    std::jthread third([&] { left.wait(); });
    {
        const ThreadWaits::WaitingFor one(second.get_id());
        const ThreadWaits::WaitingFor two(third.get_id(), second.get_id());
        EXPECT_TRUE(ThreadWaits::isWaitingFor(self, third.get_id()));
        EXPECT_FALSE(ThreadWaits::isWaitingFor(third.get_id(), self));
        {
            const ThreadWaits::Serving served;
            EXPECT_FALSE(ThreadWaits::isWaitingFor(self, second.get_id()));
            ThreadWaits::WaitingFor inner;
            EXPECT_TRUE(inner.trySet(third.get_id()));
            EXPECT_TRUE(ThreadWaits::isWaitingFor(self, third.get_id()));
            EXPECT_FALSE(inner.trySet(self));
        }
        EXPECT_TRUE(ThreadWaits::isWaitingFor(self, second.get_id()));
    }
    const ThreadWaits::WaitingFor back(self, third.get_id());
    ThreadWaits::WaitingFor waiting;
    EXPECT_TRUE(waiting.trySet(second.get_id()));
    EXPECT_FALSE(waiting.trySet(third.get_id()));
    EXPECT_FALSE(ThreadWaits::isWaitingFor(self, second.get_id())) << "nothing is declared any more";
    leave.set_value();
}

TEST(ThreadWaits, aNewWaitWakesThoseThatAskForIt)
{
    const auto self = std::this_thread::get_id();
    std::promise<void> asked;
    std::jthread other([&, first = true]() mutable {
        std::mutex mutex;
        std::unique_lock lock(mutex);
        EXPECT_TRUE(ThreadWaits::getCondition().waitFor(lock, 10s, [&] {
            const bool isWaiting = ThreadWaits::isWaitingFor(self, std::this_thread::get_id());
            if (std::exchange(first, false))
                asked.set_value();
            return isWaiting;
        }));
    });
    asked.get_future().wait();
    const ThreadWaits::WaitingFor waiting(other.get_id());
    other.join();
}

TEST(ThreadWaits, aWaitThatClosesACircleGivesWay)
{
    // Each thread holds what the other one waits for.
    std::mutex mutex;
    bool refused = false;
    const auto waitFor = [&](std::thread::id owner) {
        std::unique_lock lock(mutex);
        ThreadWaits::WaitingFor waiting;
        EXPECT_TRUE(ThreadWaits::getCondition().waitFor(lock, 10s,
                                                        [&] { return refused || !waiting.trySet(owner); }));
        refused = true;
        ThreadWaits::getCondition().notifyAll();
    };
    const auto self = std::this_thread::get_id();
    std::jthread other([&] { waitFor(self); });
    waitFor(other.get_id());
}

} // namespace
