#pragma once

#include <KesDriver/Report.h>

namespace KesDriver {

class SimulatedDevice;

/// Who sees everything that happens to a simulated device at the moment at which it happens, whether anybody has a
/// connection to it or not. Called on any thread with the device locked: it must not call the device nor wait.
class ISimulatedObserver {
public:
    virtual ~ISimulatedObserver() = default;

    /// True: nothing more is to happen until `SimulatedHost::goOn`, for two seconds at most.
    virtual bool observe(const Report& report, const SimulatedDevice& device) = 0;
    /// Whoever had the device is done with it, and all reports have been observed.
    virtual void settle(const SimulatedDevice& device) = 0;
};

} // namespace KesDriver
