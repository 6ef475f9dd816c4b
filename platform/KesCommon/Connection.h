#pragma once

#include <KesCommon/Export.h>

#include <sigc++/sigc++.h>

#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace Kes {

/// One slot's place in a gated signal: what to call, on which threads it is running, and the receivers whose
/// death cuts it. Used through `Connection` and by the signal. Any thread; none of it passes the gate.
class KES_EXPORT ConnectionSlot : public std::enable_shared_from_this<ConnectionSlot> {
public:
    explicit ConnectionSlot(std::shared_ptr<const void> callable);
    ConnectionSlot(const ConnectionSlot&) = delete;
    ConnectionSlot& operator=(const ConnectionSlot&) = delete;
    ~ConnectionSlot();

    /// False once it has been cut, even while its last run is still under way. Never waits.
    bool isConnected() const;

    /// Makes the slot run on the calling thread for its scope, if it is still connected.
    class KES_EXPORT Run {
    public:
        /// The slot outlives the run. Made and destroyed on the same thread, by which `disconnect` knows
        /// it.
        explicit Run(ConnectionSlot& slot);
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

        /// What to call, of a type that only the signal knows; null when the slot has been cut.
        const void* getCallable() const { return _callable.get(); }

    private:
        ConnectionSlot& _slot;
        std::shared_ptr<const void> _callable;
    };

    /// Cuts the slot, waits as described at `Connection::disconnect`, and lets go of the functor and of all
    /// that it has captured, at once or, where it is still running, when it has returned.
    void disconnect();

    /// Cuts the slot when one of the trackables inside the functor dies. Before others know the slot, on
    /// the thread of the trackables.
    template <typename Functor>
    void track(const Functor& functor)
    {
        sigc::visit_each_type<sigc::trackable*>([this](const sigc::trackable* object) { _track(object); },
                                                functor);
    }

private:
    struct Tracking;

    void _track(const sigc::trackable* object);
    void _waitForRuns();
    bool _isRunningOn(std::thread::id thread) const;
    static void* _onTrackableDestroyed(void* data);

    /// Held for a few assignments only: nothing of the receivers' or the functor's runs under it.
    mutable std::mutex _mutex;
    std::shared_ptr<const void> _callable;
    /// A thread for each run, the same one several times where an emission has led to another one.
    std::vector<std::thread::id> _runs;
    std::vector<std::shared_ptr<Tracking>> _trackings;
};

/// A handle on one connection of a gated signal. Copies denote the same connection; destroying a handle
/// changes nothing. Any thread.
class KES_EXPORT Connection {
public:
    Connection() = default;
    explicit Connection(std::weak_ptr<ConnectionSlot> slot) : _slot(std::move(slot)) {}

    /// False for a handle of nothing, after a cut, and when the signal has gone. Never waits.
    bool connected() const;

    /// After it has returned, the slot is not running on another thread and is never called again.
    ///
    /// It waits for a slot that is running: as in every wait of `WaitCondition` the caller lets go of the
    /// gate and the GUI thread serves its queue. It does not wait for the run that it is called from, nor for
    /// one on a thread that is itself waiting for this one (see ThreadWaits); such a run continues
    /// afterwards.
    void disconnect();

private:
    std::weak_ptr<ConnectionSlot> _slot;
};

/// A connection that ends with its owner. Declare it as the owner's last member. Its end, and the
/// assignment of another connection, wait as `Connection::disconnect` does.
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
