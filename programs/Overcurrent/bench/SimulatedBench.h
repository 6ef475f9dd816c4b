#pragma once

#include <Overcurrent/data/RelaySettings.h>

#include <KesDevice/HardwareManager.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <atomic>
#include <memory>

namespace Overcurrent {

/// What stands on the bench when the devices of a configuration are simulated ones: a relay, set as the test
/// object says, is wired to each of them that is within the process. Real devices are left alone, and so are
/// simulated ones on the network, which have a bench of their own. Any thread.
class SimulatedBench {
public:
    /// Device seconds per real second; above zero.
    void setSpeed(double factor) { _speed = factor; }

    /// A relay at rest, set as the test object says.
    static std::shared_ptr<KesDriver::ISimulatedTestObject> makeRelay(const RelaySettings& settings);
    /// Wires a relay at rest to every simulated device of the configuration and sets their speed. Not while
    /// their outputs run.
    void wire(const KesDevice::HardwareManager& hardware, const RelaySettings& settings) const;

private:
    std::atomic<double> _speed{1.0};
};

} // namespace Overcurrent
