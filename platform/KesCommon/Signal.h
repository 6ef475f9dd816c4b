#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/SignalFaults.h>
#include <KesCommon/SignalGate.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace Kes {

template <typename Signature>
class Signal;

/// A signal that may be emitted on one thread while others emit, connect or disconnect.
///
/// It is used like `sigc::signal`: `connect` takes any functor, follows the `sigc::trackable`s inside it
/// (of `sigc::mem_fun` and `sigc::track_obj`; not inside a lambda, a std::function or a sigc::slot) and cuts
/// the connection when one of them dies; an empty std::function is not connected at all; `emit` calls
/// the slots on the emitting thread, in the order of connection, and returns when the last has returned.
/// A slot connected during an emission is first called by the next one; a slot disconnected during an
/// emission is not called any more. A slot may destroy the signal. What a slot throws does not keep the
/// others from being called, nor does it reach the emitter: it goes to the exception handler.
///
/// Threads: all operations from any thread. Only `emit` passes `SignalGate`, so emissions of different
/// threads come one after the other. To connect and read the emitter's state in one step, hold the gate
/// meanwhile. A cut waits for a slot that is running (see Connection::disconnect).
///
/// A trackable receiver is connected and destroyed on its own thread. Its trackable part goes last, when its
/// members are already destroyed, so a receiver of signals from other threads keeps its connections as
/// `ScopedConnection` members declared last. A destructor with a body that changes what the slots use
/// disconnects them first: members go after the body. A signal is destroyed when no other thread emits it any
/// more. What a functor has captured is freed on the thread that cuts the connection, or at the end of a run
/// for which the cut has not waited.
template <typename... Args>
class Signal<void(Args...)> {
public:
    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal() { clear(); }

    /// The slot stays connected until it is cut: the handle need not be kept. An empty std::function gives
    /// a handle of nothing.
    template <typename Functor>
    Connection connect(Functor functor)
    {
        const auto call = std::make_shared<const Call>(std::move(functor));
        if (!*call)
            return Connection();
        const auto slot = std::make_shared<ConnectionSlot>(call);
        // Seen from where it is kept now, as a functor may hold a trackable by value.
        if (const auto* kept = call->template target<Functor>())
            slot->track(*kept);
        _append(slot);
        return Connection(slot);
    }

    /// Every slot gets the arguments as they are here; what is declared by value is copied for each slot.
    /// On the GUI thread queued functions may run before the first slot, while the gate is waited for.
    void emit(Args... args) const
    {
        SignalGate::Guard gate;
        // A slot may destroy the signal: from here on nothing of it is used.
        const auto [slots, handler] = _getState();
        for (const auto& slot : *slots) {
            const ConnectionSlot::Run run(*slot);
            if (!run.getCallable())
                continue;
            try {
                (*static_cast<const Call*>(run.getCallable()))(args...);
            } catch (...) {
                SignalFaults::handleCurrent(handler);
            }
        }
    }
    void operator()(Args... args) const { emit(args...); }

    /// The handler gets the text of an exception that a slot has thrown: on the emitting thread, before the
    /// next slot is called. Without a handler, and for exceptions during or of the handler itself, the text
    /// goes to the log. Set by the signal's owner before others use the signal.
    void setExceptionHandler(SignalFaults::Handler handler)
    {
        auto kept = std::make_shared<const SignalFaults::Handler>(std::move(handler));
        std::lock_guard lock(_mutex);
        _state.handler.swap(kept);
    }

    /// Cuts every connection and waits for running slots as `Connection::disconnect` does. New connections
    /// may be made afterwards.
    void clear()
    {
        auto none = std::make_shared<const Slots>();
        {
            std::lock_guard lock(_mutex);
            _state.slots.swap(none);
        }
        for (const auto& slot : *none)
            slot->disconnect();
    }

    /// The number of connected slots. Never waits.
    std::size_t size() const
    {
        const auto slots = _getState().slots;
        return static_cast<std::size_t>(std::count_if(slots->begin(), slots->end(),
                                                      [](const auto& slot) { return slot->isConnected(); }));
    }
    bool empty() const { return size() == 0; }

private:
    using Call = std::function<void(Args...)>;
    using Slots = std::vector<std::shared_ptr<ConnectionSlot>>;

    struct State {
        /// Replaced as a whole, so that an emission continues over the slots that it began with.
        std::shared_ptr<const Slots> slots = std::make_shared<const Slots>();
        std::shared_ptr<const SignalFaults::Handler> handler;
    };

    State _getState() const
    {
        std::lock_guard lock(_mutex);
        return _state;
    }

    void _append(const std::shared_ptr<ConnectionSlot>& slot)
    {
        auto slots = std::make_shared<Slots>();
        std::shared_ptr<const Slots> previous;
        std::lock_guard lock(_mutex);
        previous = _state.slots;
        std::copy_if(previous->begin(), previous->end(), std::back_inserter(*slots),
                     [](const auto& other) { return other->isConnected(); });
        slots->push_back(slot);
        _state.slots = std::move(slots);
    }

    /// Held for a few assignments only; functors and what they have captured are touched outside it.
    mutable std::mutex _mutex;
    State _state;
};

} // namespace Kes
