#pragma once

#include <KesDriver/Outputs.h>

#include <array>
#include <optional>

namespace KesDriver {

/// What the currents of a simulated device do to its amplifiers: the power they give to the burden, and the
/// heat. Not synchronised; its owner does that.
class SimulatedLoad {
public:
    using Channels = std::array<bool, 3>;

    explicit SimulatedLoad(const OutputLimits& limits) : _limits(limits) {}

    /// What is connected to each of the current outputs, in ohms.
    void setBurden(double ohms) { _burden = ohms; }

    /// From `time` on these are the currents.
    void apply(const std::array<Phasor, 3>& currents, DeviceTime time);

    /// The channels that give more power than they can.
    Channels getOverloaded() const;
    /// When the next channel overheats if the currents stay as they are.
    std::optional<DeviceTime> getOverheatTime() const;
    /// The channels that have overheated by that time.
    Channels getOverheated(DeviceTime time) const;

private:
    bool _isHeating(std::size_t channel) const;
    DeviceTime _getOverheatTime(std::size_t channel) const;

    const OutputLimits _limits;
    double _burden = 0.05;
    std::array<double, 3> _amperes{};
    /// By channel: how much of the overload duration is used up at `_time`.
    std::array<DeviceTime, 3> _used{};
    DeviceTime _time{0};
};

} // namespace KesDriver
