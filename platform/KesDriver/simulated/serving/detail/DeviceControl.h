#pragma once

#include <KesDriver/simulated/detail/SimulatedHost.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace KesDriver {

class EventLog;

/// Numbers the sessions of a device, from 1; 0 is none.
using SessionNumber = std::uint64_t;

/// Which session has control of a device; control is a connection of the device, at whose end it switches
/// everything off. Any thread.
class DeviceControl : public std::enable_shared_from_this<DeviceControl> {
public:
    struct Owner {
        SessionNumber session = 0;
        std::string name;
        std::string address;
    };
    /// The device itself has ended the control of a session.
    using Lost = std::function<void(SessionNumber)>;

    /// Both outlive it.
    DeviceControl(std::shared_ptr<SimulatedHost> host, EventLog& events);
    void setLost(Lost lost);

    /// Throws Scpi::Error while another session has it.
    void take(const Owner& owner);
    /// Everything off, which is an event with the reason. Nothing for a session without control.
    void release(SessionNumber session, const std::string& reason);
    /// Session 0 when nobody has it.
    Owner getOwner() const;
    bool isOwner(SessionNumber session) const { return getOwner().session == session; }
    /// Throws Scpi::Error for a session without control.
    void check(SessionNumber session) const;

    /// Each event waits until the controller has acknowledged it; ends with control. Throws Scpi::Error for a
    /// session without control.
    void setLockstep(SessionNumber session, bool isOn);
    bool hasLockstep() const { return _lockstep; }

    /// Carries the request out for a session with control. Throws Scpi::Error without, and for what the
    /// device refuses.
    void call(SessionNumber session, const SimulatedHost::Request& request);

private:
    SimulatedHost::Connection _getConnection(SessionNumber session) const;
    void _check(SessionNumber session) const;
    void _setLockstep(bool isOn);
    void _end(const std::string& reason);
    void _noteLoss(std::uint64_t connection);

    const std::shared_ptr<SimulatedHost> _host;
    EventLog& _events;
    mutable std::mutex _mutex;
    Lost _lost;
    Owner _owner;
    SimulatedHost::Connection _connection;
    /// Of the connection.
    std::uint64_t _lastNumber = 0;
    std::atomic<bool> _lockstep{false};
};

} // namespace KesDriver
