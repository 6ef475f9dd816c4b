#pragma once

#include <KesCommon/Export.h>

#include <atomic>
#include <string>
#include <vector>

namespace KesDevice {

class HardwareManager;

/// The channels of all devices of a configuration under one numbering: "IA", "IB", ... of the first device,
/// "IA2", ... of the second. Owned by the configuration. Any thread.
class KES_EXPORT HardwareVirtualChannels {
public:
    /// The names in order (three currents, then three voltages of each device), for the devices that the
    /// configuration holds now.
    std::vector<std::string> getNames() const;

    /// With control groups the three phases of one quantity are set and stopped together.
    bool isControlGroupsEnabled() const { return _controlGroups; }
    void setIsControlGroupsEnabled(bool enabled) { _controlGroups = enabled; }

private:
    friend class HardwareManager;
    explicit HardwareVirtualChannels(const HardwareManager& hardware) : _hardware(hardware) {}

    const HardwareManager& _hardware;
    std::atomic<bool> _controlGroups{false};
};

} // namespace KesDevice
