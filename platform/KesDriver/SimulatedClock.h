#pragma once

#include <KesDriver/Outputs.h>

#include <chrono>

namespace KesDriver {

/// The clock of a simulated device: device time as a function of the host's steady time and a speed factor.
/// Not synchronised; its owner does that.
class SimulatedClock {
public:
    using RealTime = std::chrono::steady_clock::time_point;

    static constexpr double minimumSpeed = 1e-6;
    static constexpr double maximumSpeed = 1e6;

    /// Device time 0 at that real time, speed 1.
    explicit SimulatedClock(RealTime start) : _realBase(start) {}

    /// Never goes back as long as the real time given does not. At most some 290 years.
    DeviceTime toDevice(RealTime real) const;
    /// The first real time at which the device time is reached; an hour from now when it lies further away.
    RealTime toReal(DeviceTime device, RealTime now) const;

    /// False, and nothing changes, outside the two limits.
    bool setSpeed(double factor, RealTime now);

private:
    RealTime _realBase;
    DeviceTime _deviceBase{0};
    double _speed = 1.0;
};

} // namespace KesDriver
