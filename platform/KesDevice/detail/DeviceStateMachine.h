#pragma once

#include <KesCommon/Nullable.h>
#include <KesDevice/DeviceState.h>

#include <mutex>
#include <string>

namespace KesDevice {

/// The state of one device with its reason, and the one place in which it changes. Only under `getMutex()`.
class DeviceStateMachine {
public:
    /// One mutex for the states of all devices, so that a configuration can look at all of its devices at one
    /// moment. A leaf: nothing is called, emitted or waited for under it.
    static std::mutex& getMutex();

    DeviceState getState() const { return _state; }
    /// Why the device is not what one would want; empty when there is nothing to say.
    const std::string& getReason() const { return _reason; }

    /// Counts the connections, their losses and their ends: who has begun something before the latest of
    /// them speaks of the past.
    unsigned getEpoch() const { return _epoch; }
    /// Begins a new epoch.
    unsigned turnEpoch() { return ++_epoch; }

    /// False, and nothing changes, when the table has no such transition.
    bool change(DeviceState state, const std::string& reason = {});

    /// For the status row: no value when nothing is known, empty when all is well, else the reason.
    Kes::Nullable<std::string> getOperationError() const;

private:
    DeviceState _state = DeviceState::Absent;
    std::string _reason;
    unsigned _epoch = 0;
};

} // namespace KesDevice
