#include <KesCommon/Connection.h>

#include <KesCommon/SignalGate.h>

#include <thread>

namespace Kes {

/// The link from a trackable to a slot that it is to cut. The trackable's list of callbacks belongs to the
/// trackable's thread, so a slot that is cut on another thread only leaves the link behind, cut at the
/// slot's end; it then goes with the trackable. All fields are used under the gate only.
struct ConnectionSlot::Tracking {
    const sigc::trackable* object;
    ConnectionSlot* slot;
    std::thread::id thread;
    /// Stands for the pointer in the trackable's list.
    std::shared_ptr<Tracking> self;
};

ConnectionSlot::ConnectionSlot(std::shared_ptr<const void> callable) : _callable(std::move(callable)) {}

ConnectionSlot::~ConnectionSlot()
{
    disconnect();
}

bool ConnectionSlot::isConnected() const
{
    SignalGate::Guard gate;
    return _callable != nullptr;
}

std::shared_ptr<const void> ConnectionSlot::getCallable() const
{
    SignalGate::Guard gate;
    return _callable;
}

void ConnectionSlot::disconnect()
{
    // What the functor has captured may do anything when it dies: it goes last, outside the gate.
    std::shared_ptr<const void> callable;
    SignalGate::Guard gate;
    callable.swap(_callable);
    _untrack();
}

void ConnectionSlot::_track(const sigc::trackable* object)
{
    SignalGate::Guard gate;
    auto tracking = std::make_shared<Tracking>(Tracking{object, this, std::this_thread::get_id(), nullptr});
    _trackings.push_back(tracking);
    object->add_destroy_notify_callback(tracking.get(), &_onTrackableDestroyed);
    tracking->self = tracking;
}

void ConnectionSlot::_untrack()
{
    for (const auto& tracking : _trackings) {
        tracking->slot = nullptr;
        if (!tracking->object || tracking->thread != std::this_thread::get_id())
            continue;
        tracking->object->remove_destroy_notify_callback(tracking.get());
        tracking->self.reset();
    }
    _trackings.clear();
}

void* ConnectionSlot::_onTrackableDestroyed(void* data)
{
    std::shared_ptr<Tracking> tracking;
    SignalGate::Guard gate;
    tracking.swap(static_cast<Tracking*>(data)->self);
    tracking->object = nullptr;
    if (tracking->slot)
        tracking->slot->disconnect();
    return nullptr;
}

bool Connection::connected() const
{
    const auto slot = _slot.lock();
    return slot && slot->isConnected();
}

void Connection::disconnect()
{
    if (const auto slot = _slot.lock())
        slot->disconnect();
}

ScopedConnection& ScopedConnection::operator=(ScopedConnection&& other) noexcept
{
    if (this != &other) {
        disconnect();
        _connection = std::exchange(other._connection, {});
    }
    return *this;
}

ScopedConnection::~ScopedConnection()
{
    disconnect();
}

} // namespace Kes
