#pragma once

#include <KesDriver/simulated/detail/SimulatedHost.h>
#include <KesDriver/simulated/serving/detail/DeviceControl.h>
#include <KesDriver/simulated/serving/detail/EventLog.h>
#include <KesDriver/simulated/serving/detail/SessionRegistry.h>

#include <cstdint>
#include <memory>

namespace KesDriver {

/// A simulated device and what its sessions share: control, events, the status of the device. Any thread.
///
/// Locks are taken in this order: control, device, then events or registry, then a session's own.
class ServedDevice : public ISimulatedObserver, public std::enable_shared_from_this<ServedDevice> {
public:
    /// Begins to observe the device; `end` stops it.
    static std::shared_ptr<ServedDevice> create(std::shared_ptr<SimulatedHost> host);
    explicit ServedDevice(std::shared_ptr<SimulatedHost> host);
    void end();

    SimulatedHost& getHost() const { return *_host; }
    DeviceControl& getControl() const { return *_control; }
    EventLog& getEvents() { return _events; }
    SessionRegistry& getSessions() { return _sessions; }
    const OutputLimits& getLimits() const { return _limits; }
    /// Another number after every start.
    std::uint32_t getBoot() const { return _boot; }

    /// All events up to this number are known to the controller, which is in lockstep with the device.
    void acknowledge(std::uint64_t number);

    bool observe(const Report& report, const SimulatedDevice& device) override;
    void settle(const SimulatedDevice& device) override;

private:
    const std::shared_ptr<SimulatedHost> _host;
    const OutputLimits _limits;
    const std::uint32_t _boot;
    EventLog _events;
    SessionRegistry _sessions;
    const std::shared_ptr<DeviceControl> _control;
};

} // namespace KesDriver
