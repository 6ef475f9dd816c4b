#pragma once

#include <KesCommon/Export.h>

#include <sigc++/sigc++.h>

#include <memory>
#include <utility>
#include <vector>

namespace Kes {

/// One slot's place in a gated signal: what to call, and the receivers whose death cuts it.
/// Used through `Connection`; all operations pass `SignalGate`.
class KES_EXPORT ConnectionSlot {
public:
    explicit ConnectionSlot(std::shared_ptr<const void> callable);
    ConnectionSlot(const ConnectionSlot&) = delete;
    ConnectionSlot& operator=(const ConnectionSlot&) = delete;
    ~ConnectionSlot();

    bool isConnected() const;

    /// What to call, of a type that only the signal knows; null once the slot is cut. Call it under the
    /// gate, and hold the pointer while it runs: the slot may cut itself.
    std::shared_ptr<const void> getCallable() const;

    /// Cuts the slot and lets go of the functor and of all that it has captured, at once or, when it is
    /// running (which can only be further up on this thread), when it has returned.
    void disconnect();

    /// Cuts the slot when one of the trackables inside the functor dies.
    template <typename Functor>
    void track(const Functor& functor)
    {
        sigc::visit_each_type<sigc::trackable*>([this](const sigc::trackable* object) { _track(object); },
                                                functor);
    }

private:
    struct Tracking;

    void _track(const sigc::trackable* object);
    void _untrack();
    static void* _onTrackableDestroyed(void* data);

    std::shared_ptr<const void> _callable;
    std::vector<std::shared_ptr<Tracking>> _trackings;
};

/// A handle on one connection of a gated signal. Copies denote the same connection; destroying a handle
/// changes nothing. Any thread.
class KES_EXPORT Connection {
public:
    Connection() = default;
    explicit Connection(std::weak_ptr<ConnectionSlot> slot) : _slot(std::move(slot)) {}

    bool connected() const;
    /// After it has returned, the slot is not running on another thread and is never called again.
    void disconnect();

private:
    std::weak_ptr<ConnectionSlot> _slot;
};

/// A connection that ends with its owner. Declare it as the owner's last member.
class KES_EXPORT ScopedConnection {
public:
    ScopedConnection() = default;
    ScopedConnection(Connection connection) : _connection(std::move(connection)) {}
    ScopedConnection(ScopedConnection&& other) noexcept : _connection(std::exchange(other._connection, {})) {}
    ScopedConnection& operator=(ScopedConnection&& other) noexcept;
    ~ScopedConnection();

    bool connected() const { return _connection.connected(); }
    void disconnect() { _connection.disconnect(); }

private:
    Connection _connection;
};

} // namespace Kes
