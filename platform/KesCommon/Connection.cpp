#include <KesCommon/Connection.h>

#include <KesCommon/ThreadWaits.h>
#include <KesCommon/WaitCondition.h>

#include <algorithm>

namespace Kes {

/// The link from a trackable to a slot that it is to cut. The trackable's list of callbacks belongs to the
/// trackable's thread, so a slot that is cut on another thread only leaves the link behind; it then goes with
/// the trackable. `object` and `self` are used on that thread only, the rest does not change.
struct ConnectionSlot::Tracking {
    const sigc::trackable* object;
    const std::weak_ptr<ConnectionSlot> slot;
    const std::thread::id thread;
    /// Stands for the pointer in the trackable's list.
    std::shared_ptr<Tracking> self;

    /// Takes the link off, where that can be done.
    void end()
    {
        if (thread != std::this_thread::get_id() || !object)
            return;
        object->remove_destroy_notify_callback(this);
        object = nullptr;
        self.reset();
    }
};

ConnectionSlot::ConnectionSlot(std::shared_ptr<const void> callable) : _callable(std::move(callable)) {}

ConnectionSlot::~ConnectionSlot()
{
    disconnect();
}

bool ConnectionSlot::isConnected() const
{
    std::lock_guard lock(_mutex);
    return _callable != nullptr;
}

ConnectionSlot::Run::Run(ConnectionSlot& slot) : _slot(slot)
{
    std::lock_guard lock(_slot._mutex);
    if (!_slot._callable)
        return;
    _slot._runs.push_back(std::this_thread::get_id());
    _callable = _slot._callable;
}

ConnectionSlot::Run::~Run()
{
    if (!_callable)
        return;
    // Before the run is over: what the functor has captured may belong to who waits for the end.
    _callable.reset();
    std::unique_lock lock(_slot._mutex);
    const auto run = std::find(_slot._runs.begin(), _slot._runs.end(), std::this_thread::get_id());
    _slot._runs.erase(run);
    const bool wasCut = !_slot._callable;
    lock.unlock();
    if (wasCut)
        ThreadWaits::getCondition().notifyAll();
}

void ConnectionSlot::disconnect()
{
    // What the functor has captured may do anything when it dies: it goes last, outside the lock.
    std::shared_ptr<const void> callable;
    std::vector<std::shared_ptr<Tracking>> trackings;
    {
        std::lock_guard lock(_mutex);
        callable.swap(_callable);
        trackings.swap(_trackings);
    }
    for (const auto& tracking : trackings)
        tracking->end();
    _waitForRuns();
}

void ConnectionSlot::_waitForRuns()
{
    std::unique_lock lock(_mutex);
    // No run begins any more.
    const auto runs = _runs;
    for (const auto thread : runs) {
        ThreadWaits::WaitingFor waiting;
        ThreadWaits::getCondition().wait(lock,
                                         [&] { return !_isRunningOn(thread) || !waiting.trySet(thread); });
    }
}

bool ConnectionSlot::_isRunningOn(std::thread::id thread) const
{
    return std::find(_runs.begin(), _runs.end(), thread) != _runs.end();
}

void ConnectionSlot::_track(const sigc::trackable* object)
{
    auto tracking =
        std::make_shared<Tracking>(Tracking{object, weak_from_this(), std::this_thread::get_id(), nullptr});
    object->add_destroy_notify_callback(tracking.get(), &_onTrackableDestroyed);
    tracking->self = tracking;
    _trackings.push_back(std::move(tracking));
}

void* ConnectionSlot::_onTrackableDestroyed(void* data)
{
    const auto tracking = std::exchange(static_cast<Tracking*>(data)->self, nullptr);
    tracking->object = nullptr;
    if (const auto slot = tracking->slot.lock())
        slot->disconnect();
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
