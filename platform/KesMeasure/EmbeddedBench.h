#pragma once

#include <KesCommon/Export.h>
#include <KesDevice/HardwareManager.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <atomic>
#include <functional>
#include <memory>

namespace KesMeasure {

/// What stands on the bench when the devices of a configuration are simulated ones within the process: a test
/// object at rest is wired to each of them. Real devices are left alone, and so are simulated ones on the
/// network, which have a bench of their own. Any thread.
class KES_EXPORT EmbeddedBench {
public:
    using MakeTestObject = std::function<std::shared_ptr<KesDriver::ISimulatedTestObject>()>;

    /// Device seconds per real second; above zero.
    void setSpeed(double factor) { _speed = factor; }

    /// Wires a test object of its own to every such device of the configuration and sets their speed. Not
    /// while their outputs run.
    void wire(const KesDevice::HardwareManager& hardware, const MakeTestObject& makeTestObject) const;

private:
    std::atomic<double> _speed{1.0};
};

} // namespace KesMeasure
