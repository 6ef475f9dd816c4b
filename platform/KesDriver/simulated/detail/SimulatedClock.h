#pragma once

#include <KesDriver/Outputs.h>

#include <chrono>

namespace KesDriver {

/// The clock of a simulated device: device time as a function of the common time of this process and a speed
/// factor. Not synchronised; its owner does that.
///
/// Device time is the common time multiplied by the speed, plus a whole number of microseconds: the clocks of
/// two devices with equal speeds are apart by that number for ever, whatever moment they are asked about.
class SimulatedClock {
public:
    using RealTime = std::chrono::steady_clock::time_point;
    /// A moment on the common clock, finer than a `CommonTime`.
    using Moment = std::chrono::duration<double, std::nano>;

    static constexpr double minimumSpeed = 1e-6;
    static constexpr double maximumSpeed = 1e6;

    /// Device time 0 at that real time, speed 1.
    explicit SimulatedClock(RealTime start);

    static RealTime now() { return std::chrono::steady_clock::now(); }
    static Moment toMoment(RealTime real);

    /// Never goes back as long as the time given does not.
    DeviceTime toDevice(Moment moment) const;
    /// The moment at which the device time is reached.
    Moment toMoment(DeviceTime device) const;
    /// The same as a real time, rounded up; an hour from now when it lies further away.
    RealTime toReal(DeviceTime device, RealTime now) const;

    /// From now on, when the device time is `device`. False, and nothing changes, outside the two limits.
    bool setSpeed(double factor, DeviceTime device, RealTime now);
    double getSpeed() const { return _speed; }

private:
    DeviceTime _offset{0};
    double _speed = 1.0;
};

} // namespace KesDriver
