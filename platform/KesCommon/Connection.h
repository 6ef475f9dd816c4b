#pragma once

#include <KesCommon/Export.h>

#include <sigc++/sigc++.h>

#include <memory>
#include <utility>
#include <vector>

namespace Kes {

/// One slot's place in a gated signal. Used through `Connection`; all operations pass `SignalGate`.
class KES_EXPORT ConnectionSlot {
public:
    ConnectionSlot() = default;
    ConnectionSlot(const ConnectionSlot&) = delete;
    ConnectionSlot& operator=(const ConnectionSlot&) = delete;
    virtual ~ConnectionSlot();

    bool isConnected() const;
    void disconnect();

    /// Cuts the slot when one of the trackables inside the functor dies.
    template <typename Functor>
    void track(const Functor& functor)
    {
        sigc::visit_each_type<sigc::trackable*>([this](sigc::trackable* object) { _track(object); }, functor);
    }

private:
    void _track(const sigc::trackable* object);
    static void* _onTrackableDestroyed(void* data);

    bool _connected = true;
    std::vector<const sigc::trackable*> _tracked;
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
