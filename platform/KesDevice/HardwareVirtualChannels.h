#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/Outputs.h>

#include <atomic>
#include <vector>

namespace KesDevice {

class HardwareManager;

/// Outputs of all devices together: current 1 is IA of the first device, current 4 IA of the second, and so
/// on; voltages likewise. What is not given is zero.
struct VirtualOutputs {
    /// In amperes.
    std::vector<KesDriver::Phasor> currents;
    /// In volts.
    std::vector<KesDriver::Phasor> voltages;
    double currentHertz = 50.0;
    double voltageHertz = 50.0;
};

/// The channels of all devices of a configuration under one numbering. Owned by the configuration. Any
/// thread.
class KES_EXPORT HardwareVirtualChannels {
public:
    /// How many currents, and as many voltages, the devices have together at this moment.
    std::size_t getCount() const;

    /// What each device has to put out, in the order of the devices. Refuses a channel that no device has,
    /// with its number.
    Kes::Result split(const VirtualOutputs& outputs, std::vector<KesDriver::OutputState>& states) const;

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
