#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/SignalGate.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
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
/// emission is not called any more. A slot may destroy the signal.
///
/// Threads: `emit`, `connect` and `disconnect` from any thread; all pass `SignalGate`. A trackable
/// receiver is connected and destroyed on its own thread. Its trackable part goes last, when its members
/// are already destroyed, so a receiver of signals from other threads keeps its connections as
/// `ScopedConnection` members declared last, or is destroyed while its owner holds the gate. A destructor
/// with a body that changes what the slots use disconnects them first: members go after the body. A signal is
/// destroyed when no other thread emits it any more. What a functor has captured is freed on the thread that
/// cuts the connection.
template <typename... Args>
class Signal<void(Args...)> {
public:
    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal() { clear(); }

    template <typename Functor>
    Connection connect(Functor functor)
    {
        const auto call = std::make_shared<const Call>(std::move(functor));
        if (!*call)
            return Connection();
        SignalGate::Guard gate;
        auto slots = std::make_shared<Slots>();
        std::copy_if(_slots->begin(), _slots->end(), std::back_inserter(*slots),
                     [](const auto& slot) { return slot->isConnected(); });
        const auto slot = std::make_shared<ConnectionSlot>(call);
        slots->push_back(slot);
        // Seen from where it is kept now, as a functor may hold a trackable by value.
        if (const auto* kept = call->template target<Functor>())
            slot->track(*kept);
        _slots = std::move(slots);
        return Connection(slot);
    }

    void emit(Args... args) const
    {
        SignalGate::Guard gate;
        // A slot may destroy the signal: from here on nothing of it is used.
        const auto slots = _slots;
        for (const auto& slot : *slots)
            if (const auto callable = slot->getCallable())
                (*static_cast<const Call*>(callable.get()))(args...);
    }
    void operator()(Args... args) const { emit(args...); }

    /// Cuts every connection.
    void clear()
    {
        const auto slots = [this] {
            SignalGate::Guard gate;
            return std::exchange(_slots, std::make_shared<const Slots>());
        }();
        for (const auto& slot : *slots)
            slot->disconnect();
    }

    /// The number of connected slots.
    std::size_t size() const
    {
        SignalGate::Guard gate;
        return static_cast<std::size_t>(std::count_if(_slots->begin(), _slots->end(),
                                                      [](const auto& slot) { return slot->isConnected(); }));
    }
    bool empty() const { return size() == 0; }

private:
    using Call = std::function<void(Args...)>;
    using Slots = std::vector<std::shared_ptr<ConnectionSlot>>;

    /// Replaced as a whole, so that an emission goes on over the slots that it began with.
    std::shared_ptr<const Slots> _slots = std::make_shared<const Slots>();
};

} // namespace Kes
