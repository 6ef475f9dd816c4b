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
    RunSequence,
    StopOutputs
};

/// A device whose every answer is scripted, for tests of what stands above the link.
///
/// The test keeps it; the links made from it may outlive it or die before it. It accepts everything until it
/// is told otherwise, records every call, and reports events on a thread of its own, as a real link does. Any
/// thread.
///
///     FakeKesto fake;
///     const std::shared_ptr<Kesto> owned = Kesto::create(address(2), fake.createLink());
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
        _state->set([&] { _state->identity.identifer = identifer; });
    }
    void setLimits(const KesDriver::OutputLimits& limits)
    {
        _state->set([&] { _state->limits = limits; });
    }
    void setState(KesDriver::KestoState state)
    {
        _state->set([&] { _state->state = std::move(state); });
    }
    /// The device refuses the call with the text from now on; an empty text makes it succeed again.
    void fail(LinkCall call, const std::string& text)
    {
        answer(call, text.empty() ? Kes::Result(true) : Kes::Result::failure(text));
    }
    /// From now on.
    void answer(LinkCall call, const Kes::Result& result)
    {
        _state->set([&] { _state->answers.insert_or_assign(call, result); });
    }
    /// The next call finds no memory.
    void throwIn(LinkCall call)
    {
        _state->set([&] { _state->throwing.insert(call); });
    }
    /// The connection is lost in the next such call, before the device has heard of it.
    void dropIn(LinkCall call)
    {
        _state->set([&] { _state->dropping.insert(call); });
    }
    /// The call stands still from now on until `release`, or until the connection ends (before anything else
    /// happens).
    void hold(LinkCall call)
    {
        _state->set([&] { _state->held.insert(call); });
    }
    /// The call is carried out at once, and its answer stands still until `release`, or until the connection
    /// ends.
    void holdAnswer(LinkCall call)
    {
        _state->set([&] { _state->heldAnswers.insert(call); });
    }
    void release(LinkCall call)
    {
        _state->set([&] {
            _state->held.erase(call);
            _state->heldAnswers.erase(call);
        });
    }

    // What it was asked.

    std::size_t countCalls(LinkCall call) const;
    /// Waits until the call has begun that often; false after ten seconds.
    bool waitForCall(LinkCall call, std::size_t count = 1) const;
    bool isConnected() const { return _state->get(_state->connection) != 0; }
    bool isWorking() const { return _state->get(_state->isWorking); }

    // What it reports by itself, on its own thread and in the order of the calls. The result is ready when
    // the receiver has returned; without a receiver the report is dropped.

    std::future<void> report(KesDriver::Report report);
    /// Drops the connection and reports its loss.
    std::future<void> reportConnectionLost()
    {
        const auto connection = _state->get(_state->connection);
        _state->set([this] { _state->end(); });
        return _report(connection, KesDriver::ConnectionLost{});
    }

private:
    class Link;
    std::future<void> _report(KesDriver::ConnectionNumber connection, KesDriver::Report report);

    struct State {
        mutable std::mutex mutex;
        mutable std::condition_variable changed;

        KesDriver::KestoIdentity identity{{3, 17}, "1.0", "2026-01-31"};
        KesDriver::KestoState state{true, false, 0.0, {}};
        KesDriver::OutputLimits limits;
        std::map<LinkCall, Kes::Result> answers;
        std::set<LinkCall> held;
        std::set<LinkCall> heldAnswers;
        std::set<LinkCall> dropping;
        std::set<LinkCall> throwing;

        std::map<LinkCall, std::size_t> calls;
        /// The present connection; 0 without one.
        KesDriver::ConnectionNumber connection = 0;
        KesDriver::ConnectionNumber connections = 0;
        bool isWorking = false;

        std::weak_ptr<KesDriver::IReportReceiver> receiver;
        std::queue<std::packaged_task<void()>> reports;
        bool stopping = false;

        Kes::Result connect(KesDriver::ConnectionNumber& number);
        Kes::Result call(LinkCall call, const std::function<void()>& effect);
        Kes::Result getAnswer(LinkCall call) const;
        void end() { connection = 0, isWorking = false; }
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
