#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/Outputs.h>
#include <KesDriver/Report.h>

#include <optional>

namespace KesDriver {

/// What is wired to a simulated device: it sees the outputs and answers on the binary inputs.
/// All calls come from the simulated device, one at a time, with device time that never goes back: on the
/// device's thread or on that of a caller of the device. The device is locked meanwhile, so nothing here may
/// call it.
class KES_EXPORT ISimulatedTestObject {
public:
    virtual ~ISimulatedTestObject();

    /// Everything is at rest, as at the start of a working mode; random deviations restart from their seed.
    virtual void reset(DeviceTime time) = 0;
    /// From `time` on the outputs are these; a ramp comes as one call each millisecond.
    virtual void applyOutputs(const OutputState& outputs, DeviceTime time) = 0;
    /// The next contact change that will come if the outputs stay as they are; none when nothing will change.
    /// Its step is not asked for.
    virtual std::optional<InputEvent> getNextChange() const = 0;
    /// The change just announced has come.
    virtual void acceptChange() = 0;
};

} // namespace KesDriver
