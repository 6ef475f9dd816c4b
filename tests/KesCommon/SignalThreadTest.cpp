#include "ServingQueue.h"

#include <KesCommon/Signal.h>
#include <KesCommon/WaitCondition.h>
#include <KesCommon/Worker.h>

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <tuple>

using KesTest::ServingQueue;

namespace {

/// Counts on one thread what others emit, and dies there.
class Listener : public sigc::trackable {
public:
    explicit Listener(Kes::Signal<void(int)>& signal)
        : _connection(signal.connect(sigc::mem_fun(*this, &Listener::_on)))
    {}

private:
    void _on(int value) { *_sum += value; }

    const std::unique_ptr<long> _sum = std::make_unique<long>(0);
    Kes::ScopedConnection _connection;
};

TEST(SignalThreads, twoEmitOneConnectsAndReceiversDieMeanwhile)
{
    constexpr int emissions = 2000;
    Kes::Signal<void(int)> signal;
    long heard = 0;
    bool inSlot = false;
    signal.connect([&](int value) {
        EXPECT_FALSE(std::exchange(inSlot, true));
        heard += value;
        inSlot = false;
    });
    std::atomic<int> running{2};
    const auto emitMany = [&] {
        for (int i = 0; i < emissions; ++i)
            signal.emit(1);
        --running;
    };
    {
        std::jthread one(emitMany);
        std::jthread two(emitMany);
        std::jthread connecting([&] {
            while (running > 0)
                signal.connect([number = std::make_shared<int>(0)](int i) { *number += i; }).disconnect();
        });
        while (running > 0)
            Listener listener(signal);
    }
    EXPECT_EQ(heard, 2L * emissions);
    EXPECT_EQ(signal.size(), 1U);
}

TEST(SignalThreads, aSignalAndItsReceiverMayDieAtOnce)
{
    for (int i = 0; i < 300; ++i) {
        auto signal = std::make_unique<Kes::Signal<void(int)>>();
        auto receiver = std::make_unique<Listener>(*signal);
        auto connection = signal->connect(sigc::track_obj([](int) {}, *receiver));
        std::jthread other([&] { signal.reset(); });
        receiver.reset();
        EXPECT_FALSE(connection.connected());
    }
}

/// A slot that lets go of the gate in its middle, until the serving thread tells it in a wait to go on.
class PausingSlot : public testing::TestWithParam<std::tuple<std::string, bool>> {
protected:
    PausingSlot()
    {
        const std::shared_ptr<void> captured(nullptr, [this](void*) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            isFreed = true;
        });
        connection = signal.connect(sigc::track_obj([this, captured] { _run(); }, *receiver));
        emitter = std::jthread([this] { signal.emit(); });
        inside.get_future().wait();
        queue.post([this] {
            std::lock_guard lock(mutex);
            mayGoOn = true;
            condition.notifyAll();
        });
    }

    void cut(const std::string& how)
    {
        if (how == "Disconnecting")
            connection.disconnect();
        else if (how == "Clearing")
            signal.clear();
        else if (how == "OfAScopedConnection")
            const Kes::ScopedConnection dying(connection);
        else
            receiver.reset();
    }

    ServingQueue queue;
    Kes::Signal<void()> signal;
    Kes::Connection connection;
    std::unique_ptr<sigc::trackable> receiver = std::make_unique<sigc::trackable>();
    std::promise<void> inside;
    std::mutex mutex;
    Kes::WaitCondition condition;
    bool mayGoOn = false;
    std::atomic<bool> hasEnded{false};
    std::atomic<bool> isFreed{false};
    std::jthread emitter;

private:
    void _run()
    {
        std::unique_lock lock(mutex);
        inside.set_value();
        condition.wait(lock, [this] { return mayGoOn; });
        hasEnded = true;
    }
};

INSTANTIATE_TEST_SUITE_P(Cut, PausingSlot,
                         testing::Combine(testing::Values("Disconnecting", "Clearing", "OfAScopedConnection",
                                                          "OfATrackable"),
                                          testing::Bool()));

TEST_P(PausingSlot, hasEndedWhenTheCutReturnsAlsoUnderTheGate)
{
    const auto [how, isUnderTheGate] = GetParam();
    std::optional<Kes::SignalGate::Guard> gate;
    if (isUnderTheGate)
        gate.emplace();
    cut(how);
    EXPECT_TRUE(hasEnded && isFreed && signal.empty());
    EXPECT_EQ(Kes::SignalGate::isHeldByThisThread(), isUnderTheGate);
}

TEST(SignalThreads, aCutDoesNotWaitForAThreadThatWaitsForIt)
{
    Kes::Signal<void()> signal;
    Kes::Connection connection;
    connection = signal.connect([&] { Kes::Worker("Kes_Bench", [&] { connection.disconnect(); }).wait(); });
    signal.emit();
    EXPECT_FALSE(connection.connected());

    // Both threads are in the slot, and both cut it there.
    std::barrier both(2);
    std::atomic<int> ended{0};
    connection = signal.connect([&] {
        const Kes::SignalGate::Release release;
        both.arrive_and_wait();
        connection.disconnect();
        ++ended;
    });
    std::jthread one([&] { signal.emit(); });
    std::jthread two([&] { signal.emit(); });
    one.join();
    two.join();
    EXPECT_EQ(ended, 2);
}

TEST(SignalThreads, askingForConnectionsNeitherServesNorWaitsForTheGate)
{
    ServingQueue queue;
    Kes::Signal<void()> signal;
    std::promise<void> entered;
    std::promise<void> leave;
    auto connection = signal.connect([&] {
        entered.set_value();
        leave.get_future().wait();
    });
    std::jthread emitter([&] { signal.emit(); });
    entered.get_future().wait();
    queue.post([] { ADD_FAILURE() << "a queued function has run"; });
    EXPECT_TRUE(connection.connected());
    EXPECT_FALSE(signal.empty());
    signal.connect([] {});
    EXPECT_EQ(signal.size(), 2U);
    leave.set_value();
}

TEST(SignalThreads, theServingThreadAnswersASlotWhileItWaitsForTheGate)
{
    ServingQueue queue;
    Kes::Signal<void()> signal;
    std::promise<void> entered;
    int answered = 0;
    signal.connect([&] {
        entered.set_value();
        for (int i = 0; i < 20; ++i)
            queue.wait([&] { ++answered; });
    });
    std::jthread emitter([&] { signal.emit(); });
    entered.get_future().wait();
    // Waits until the emission is over, which needs this very thread twenty times.
    const Kes::SignalGate::Guard gate;
    EXPECT_EQ(answered, 20);
}

TEST(SignalThreads, aStreamOfEmissionsDoesNotKeepTheServingThreadOut)
{
    ServingQueue queue;
    Kes::Signal<void()> signal;
    std::atomic<bool> stop{false};
    const auto emitAlways = [&] {
        while (!stop)
            signal.emit();
    };
    std::jthread one(emitAlways);
    std::jthread two(emitAlways);
    int taken = 0;
    for (int i = 0; i < 200; ++i) {
        const Kes::SignalGate::Guard gate;
        ++taken;
    }
    stop = true;
    EXPECT_EQ(taken, 200);
}

} // namespace
