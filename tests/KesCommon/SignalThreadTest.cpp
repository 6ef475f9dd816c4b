#include <KesCommon/Signal.h>
#include <KesCommon/ThreadHelper.h>
#include <KesCommon/WaitService.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <deque>
#include <future>
#include <mutex>
#include <optional>
#include <thread>

namespace {

/// A GUI queue in small: the test's thread serves it, others wait on it.
class Queue {
public:
    Queue()
    {
        Kes::WaitService::install([this] { drain(); });
    }
    ~Queue() { Kes::WaitService::uninstall(); }

    /// Runs the function on the serving thread and waits for it.
    void wait(std::function<void()> function)
    {
        std::packaged_task<void()> task(std::move(function));
        auto done = task.get_future();
        {
            std::lock_guard lock(_mutex);
            _tasks.push_back(std::move(task));
        }
        done.wait();
    }

    void drain()
    {
        while (auto task = _take())
            (*task)();
    }

private:
    std::optional<std::packaged_task<void()>> _take()
    {
        std::lock_guard lock(_mutex);
        if (_tasks.empty())
            return std::nullopt;
        auto task = std::move(_tasks.front());
        _tasks.pop_front();
        return task;
    }

    std::mutex _mutex;
    std::deque<std::packaged_task<void()>> _tasks;
};

/// Counts on one thread what others emit, and dies there.
class Listener : public sigc::trackable {
public:
    explicit Listener(Kes::Signal<void(int)>& signal)
        : _sum(std::make_unique<long>(0)),
          _first(signal.connect(sigc::mem_fun(*this, &Listener::_on))),
          _second(signal.connect(sigc::mem_fun(*this, &Listener::_on)))
    {}

private:
    void _on(int value) { *_sum += value; }

    std::unique_ptr<long> _sum;
    Kes::ScopedConnection _first;
    Kes::ScopedConnection _second;
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
    std::thread one(emitMany);
    std::thread two(emitMany);
    std::thread connecting([&] {
        while (running > 0) {
            auto connection =
                signal.connect([number = std::make_shared<int>(0)](int value) { *number += value; });
            connection.disconnect();
        }
    });
    do {
        Listener listener(signal);
        signal.emit(0);
    } while (running > 0);
    one.join();
    two.join();
    connecting.join();
    EXPECT_EQ(heard, 2L * emissions);
    EXPECT_EQ(signal.size(), 1U);
}

TEST(SignalThreads, aSignalAndItsReceiverMayDieAtOnce)
{
    for (int i = 0; i < 300; ++i) {
        auto signal = std::make_unique<Kes::Signal<void(int)>>();
        auto receiver = std::make_unique<Listener>(*signal);
        auto connection = signal->connect(sigc::track_obj([](int) {}, *receiver));
        std::thread other([&] { signal.reset(); });
        receiver.reset();
        EXPECT_FALSE(connection.connected());
        other.join();
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
    std::thread emitter([&] { signal.emit(); });
    entered.get_future().wait();
    std::thread releaser([&] { leave.set_value(); });
    connection.disconnect();
    EXPECT_TRUE(ended);
    emitter.join();
    releaser.join();
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
    std::thread emitter([&] { signal.emit(); });
    entered.get_future().wait();
    // Blocks until the emission is over, which needs this very thread twenty times.
    signal.connect([] {}).disconnect();
    EXPECT_EQ(answered, 20);
    emitter.join();
}

TEST(SignalThreads, aSlotMayWaitForAFunctionThatItselfUsesSignals)
{
    Queue queue;
    Kes::Signal<void()> signal;
    Kes::Signal<void()> other;
    int heard = 0;
    other.connect([&] { ++heard; });
    signal.connect([&] {
        Kes::SignalGate::Loan loan;
        queue.wait([&] {
            const Kes::SignalGate::Loan::Use gate(loan);
            other.emit();
            other.connect([] {}).disconnect();
        });
        EXPECT_TRUE(Kes::SignalGate::isHeldByThisThread());
        ++heard;
    });
    std::thread emitter([&] { signal.emit(); });
    Kes::ThreadHelper::join(emitter);
    EXPECT_EQ(heard, 2);
    EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread());
    other.emit();
    EXPECT_EQ(heard, 3);
}

TEST(SignalThreads, aStreamOfEmissionsDoesNotKeepTheServingThreadOut)
{
    Queue queue;
    Kes::Signal<void()> signal;
    std::atomic<bool> stop{false};
    std::atomic<long> emissions{0};
    signal.connect([&] { ++emissions; });
    const auto emitAlways = [&] {
        while (!stop)
            signal.emit();
    };
    std::thread one(emitAlways);
    std::thread two(emitAlways);
    for (int i = 0; i < 200; ++i)
        signal.connect([] {}).disconnect();
    stop = true;
    one.join();
    two.join();
    EXPECT_EQ(signal.size(), 1U);
}

TEST(SignalThreads, theGateIsLetGoOfInFullAndTakenAgain)
{
    Kes::SignalGate::Guard outer;
    {
        Kes::SignalGate::Guard inner;
        const Kes::SignalGate::Release release;
        EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread());
        std::thread other([] { Kes::SignalGate::Guard guard; });
        other.join();
    }
    EXPECT_TRUE(Kes::SignalGate::isHeldByThisThread());
}

TEST(ThreadHelper, joinServesAndReleasesTheGateUntilTheThreadHasEnded)
{
    Queue queue;
    Kes::Signal<void()> signal;
    bool served = false;
    int value = 0;
    std::thread worker([&] {
        signal.emit();
        queue.wait([&] { served = true; });
        value = 1;
    });
    {
        Kes::SignalGate::Guard guard;
        Kes::ThreadHelper::join(worker);
        EXPECT_TRUE(Kes::SignalGate::isHeldByThisThread());
    }
    EXPECT_FALSE(worker.joinable());
    EXPECT_TRUE(served);
    EXPECT_EQ(value, 1);
    Kes::ThreadHelper::join(worker);
}

TEST(ThreadHelper, joinOnOtherThreadsReleasesTheGate)
{
    Kes::Signal<void()> signal;
    Kes::SignalGate::Guard guard;
    std::thread worker([&] { signal.emit(); });
    Kes::ThreadHelper::join(worker);
    EXPECT_FALSE(worker.joinable());
}

TEST(ThreadHelper, aServedFunctionMayEndTheService)
{
    auto queue = std::make_unique<Queue>();
    std::thread worker([&] { queue->wait([] { Kes::WaitService::uninstall(); }); });
    Kes::ThreadHelper::join(worker);
    EXPECT_FALSE(Kes::WaitService::isServingThread());
}

TEST(ThreadHelper, namesAreShortenedToWholeCharacters)
{
    const std::pair<const char*, const char*> cases[] = {{"short", "short"},
                                                         {"fifteen bytes!!", "fifteen bytes!!"},
                                                         {"KesProgram_Shutdown", "KesProgram_Shut"},
                                                         {"Кириллица", "Кирилли"},
                                                         {"aКириллица", "aКирилли"},
                                                         {"", ""}};
    std::thread([&] {
        for (const auto& [name, kept] : cases) {
            Kes::ThreadHelper::setCurrentThreadName(name);
            EXPECT_EQ(Kes::ThreadHelper::getCurrentThreadName(), kept);
        }
    }).join();
}

} // namespace
