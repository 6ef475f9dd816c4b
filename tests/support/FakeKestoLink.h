#pragma once

#include <KesDriver/IKestoLink.h>

#include <condition_variable>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <queue>
#include <set>
#include <string>
#include <thread>

namespace KesTest {

/// The operations of a link that a script can answer and a test can look for.
enum class LinkCall {
    Connect,
    Identify,
    ReadState,
    SetAuxDC,
    StartWorkingMode,
    StopWorkingMode,
    SetOutputs,
    StopOutputs
};

/// A device whose every answer is scripted, for tests of what stands above the link.
///
/// The test keeps it; the links made from it may outlive it or die before it. It accepts everything until it
/// is told otherwise, records every call, and reports events on a thread of its own, as a real link does. Any
/// thread.
///
///     KesTest::FakeKesto fake;
///     KesDevice::Kesto kesto(address, fake.createLink());
class FakeKesto {
public:
    FakeKesto() = default;
    ~FakeKesto();
    FakeKesto(const FakeKesto&) = delete;
    FakeKesto& operator=(const FakeKesto&) = delete;

    std::unique_ptr<KesDriver::IKestoLink> createLink();

    // What it answers.

    void setIdentifer(KesDriver::KestoIdentifer identifer)
    {
        _state->set([&] { _state->identifer = identifer; });
    }
    void setState(KesDriver::KestoState state)
    {
        _state->set([&] { _state->state = std::move(state); });
    }
    /// The call fails with the text from now on; an empty text makes it succeed again.
    void fail(LinkCall call, const std::string& text)
    {
        _state->set([&] { _state->failures[call] = text; });
    }
    /// The call stands still from now on until `release` (before anything else happens).
    void hold(LinkCall call)
    {
        _state->set([&] { _state->held.insert(call); });
    }
    void release(LinkCall call)
    {
        _state->set([&] { _state->held.erase(call); });
    }

    // What it was asked.

    std::size_t countCalls(LinkCall call) const;
    /// Waits until the call has begun that often; false after ten seconds.
    bool waitForCall(LinkCall call, std::size_t count = 1) const;
    bool isConnected() const { return _state->get(_state->isConnected); }
    bool isWorking() const { return _state->get(_state->isWorking); }

    // What it reports by itself, on its own thread and in the order of the calls. The result is ready when
    // the listener has returned; without a listener the report is dropped.

    using Report = std::function<void(KesDriver::IKestoLinkListener&)>;
    std::future<void> report(Report report);
    std::future<void> reportInput(unsigned input, bool isClosed, KesDriver::DeviceTime time)
    {
        return report([=](auto& listener) { listener.onInput({input, isClosed, time}); });
    }
    std::future<void> reportStep(std::size_t step, KesDriver::DeviceTime time)
    {
        return report([=](auto& listener) { listener.onStep({step, time}); });
    }
    std::future<void> reportSequenceFinished(bool isComplete, KesDriver::DeviceTime time)
    {
        return report([=](auto& listener) { listener.onSequenceFinished({isComplete, time}); });
    }
    std::future<void> reportAvary(const KesDriver::KesAvary& avary)
    {
        return report([avary](auto& listener) { listener.onAvary(avary); });
    }
    /// Drops the connection and reports its loss.
    std::future<void> reportConnectionLost()
    {
        _state->set([this] { _state->isConnected = _state->isWorking = false; });
        return report([](auto& listener) { listener.onConnectionLost(); });
    }

private:
    class Link;
    struct State {
        mutable std::mutex mutex;
        mutable std::condition_variable changed;

        KesDriver::KestoIdentifer identifer{3, 17};
        KesDriver::KestoState state{true, false, 0.0, {}};
        std::map<LinkCall, std::string> failures;
        std::set<LinkCall> held;

        std::map<LinkCall, std::size_t> calls;
        bool isConnected = false;
        bool isWorking = false;

        KesDriver::IKestoLinkListener* listener = nullptr;
        std::queue<std::packaged_task<void()>> reports;
        std::thread::id deliverer;
        bool stopping = false;

        Kes::Result call(LinkCall call, const std::function<void()>& effect);
        void deliver(const Report& report);
        void run();

        template <typename Field>
        Field get(const Field& field) const
        {
            std::lock_guard lock(mutex);
            return field;
        }
        template <typename Change>
        void set(Change change)
        {
            std::lock_guard lock(mutex);
            change();
            changed.notify_all();
        }
    };

    std::shared_ptr<State> _state = std::make_shared<State>();
    std::thread _thread{[state = _state] { state->run(); }};
};

} // namespace KesTest
