#include <KesCommon/Signal.h>
#include <KesCommon/ThreadHelper.h>
#include <KesCommon/WaitService.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace {

/// A GUI queue in small: the test's thread serves it, one other at a time waits on it.
class Queue {
public:
    Queue()
    {
        Kes::WaitService::install([this] {
            if (auto* task = _task.exchange(nullptr))
                std::packaged_task<void()>(std::move(*task))();
        });
    }
    ~Queue() { Kes::WaitService::uninstall(); }

    /// Runs the function on the serving thread and waits for it.
    void wait(std::function<void()> function)
    {
        std::packaged_task<void()> task(std::move(function));
        auto done = task.get_future();
        _task = &task;
        done.wait();
    }

private:
    std::atomic<std::packaged_task<void()>*> _task{nullptr};
};

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

TEST(SignalThreads, disconnectReturnsOnlyWhenTheSlotHasEnded)
{
    Kes::Signal<void()> signal;
    std::promise<void> entered;
    std::promise<void> leave;
    std::atomic<bool> ended{false};
    auto connection = signal.connect([&] {
        entered.set_value();
        leave.get_future().wait();
        ended = true;
    });
    std::jthread emitter([&] { signal.emit(); });
    entered.get_future().wait();
    std::jthread releaser([&] { leave.set_value(); });
    connection.disconnect();
    EXPECT_TRUE(ended);
}

TEST(SignalThreads, theServingThreadAnswersASlotWhileItWaitsForTheGate)
{
    Queue queue;
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
    // Blocks until the emission is over, which needs this very thread twenty times.
    signal.connect([] {}).disconnect();
    EXPECT_EQ(answered, 20);
}

TEST(SignalThreads, aStreamOfEmissionsDoesNotKeepTheServingThreadOut)
{
    Queue queue;
    Kes::Signal<void()> signal;
    std::atomic<bool> stop{false};
    const auto emitAlways = [&] {
        while (!stop)
            signal.emit();
    };
    std::jthread one(emitAlways);
    std::jthread two(emitAlways);
    for (int i = 0; i < 200; ++i)
        signal.connect([] {}).disconnect();
    stop = true;
    EXPECT_TRUE(signal.empty());
}

TEST(ThreadHelper, joinServesAndReleasesTheGateUntilTheThreadHasEnded)
{
    for (const bool serving : {true, false}) {
        auto queue = serving ? std::make_unique<Queue>() : nullptr;
        Kes::Signal<void()> signal;
        bool served = false;
        std::thread worker([&] {
            signal.emit();
            if (queue)
                queue->wait([&] { served = true; });
        });
        Kes::SignalGate::Guard outer;
        Kes::SignalGate::Guard inner;
        Kes::ThreadHelper::join(worker);
        EXPECT_TRUE(Kes::SignalGate::isHeldByThisThread());
        EXPECT_EQ(served, serving);
        Kes::ThreadHelper::join(worker);
    }
}

TEST(ThreadHelper, aServedFunctionMayEndTheService)
{
    auto queue = std::make_unique<Queue>();
    std::thread worker([&] { queue->wait([] { Kes::WaitService::uninstall(); }); });
    Kes::ThreadHelper::join(worker);
    EXPECT_FALSE(Kes::WaitService::isServingThread());
}

} // namespace
