#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/SignalGate.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Kes {

template <typename Signature>
class Signal;

/// A signal that may be emitted on one thread while others emit, connect or disconnect.
///
/// It is used like `sigc::signal`: `connect` takes any functor, follows the `sigc::trackable`s inside it
/// (of `sigc::mem_fun` and `sigc::track_obj`) and cuts the connection when one of them dies; `emit` calls
/// the slots on the emitting thread, in the order of connection, and returns when the last has returned.
/// A slot connected during an emission is first called by the next one; a slot disconnected during an
/// emission is not called any more. A slot may destroy the signal.
///
/// Threads: `emit`, `connect` and `disconnect` from any thread; all pass `SignalGate`. A trackable
/// receiver is connected and destroyed on its own thread. Its trackable part goes last, when its members
/// are already destroyed, so a receiver of signals from other threads keeps its connections as
/// `ScopedConnection` members declared last, or is destroyed while its owner holds the gate.
template <typename... Args>
class Signal<void(Args...)> {
public:
    Signal() : _state(std::make_shared<State>()) {}
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal() { clear(); }

    template <typename Functor>
    Connection connect(Functor functor)
    {
        SignalGate::Guard gate;
        auto slot = std::make_shared<Slot>();
        slot->track(functor);
        slot->call = std::move(functor);
        auto slots = std::make_shared<Slots>();
        for (const auto& old : *_state->slots)
            if (old->isConnected())
                slots->push_back(old);
        slots->push_back(slot);
        _state->slots = std::move(slots);
        return Connection(slot);
    }

    void emit(Args... args) const
    {
        SignalGate::Guard gate;
        const auto slots = _state->slots;
        for (const auto& slot : *slots)
            if (slot->isConnected())
                slot->call(args...);
    }
    void operator()(Args... args) const { emit(args...); }

    /// Cuts every connection.
    void clear()
    {
        SignalGate::Guard gate;
        const auto slots = std::exchange(_state->slots, std::make_shared<Slots>());
        for (const auto& slot : *slots)
            slot->disconnect();
    }

    /// The number of connected slots.
    std::size_t size() const
    {
        SignalGate::Guard gate;
        std::size_t count = 0;
        for (const auto& slot : *_state->slots)
            count += slot->isConnected() ? 1 : 0;
        return count;
    }
    bool empty() const { return size() == 0; }

private:
    struct Slot : ConnectionSlot {
        std::function<void(Args...)> call;
    };
    using Slots = std::vector<std::shared_ptr<Slot>>;
    struct State {
        std::shared_ptr<const Slots> slots = std::make_shared<Slots>();
    };

    std::shared_ptr<State> _state;
};

} // namespace Kes
