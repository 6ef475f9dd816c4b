#include <KesDriver/simulated/detail/SimulatedClock.h>

#include <algorithm>
#include <cmath>

namespace KesDriver {

namespace {

/// Near enough that a double holds moments to the nanosecond.
SimulatedClock::RealTime getEpoch()
{
    static const auto epoch = std::chrono::steady_clock::now();
    return epoch;
}

constexpr double nanosecondsPerMicrosecond = 1000.0;

DeviceTime toMicroseconds(double value)
{
    constexpr double longest = 4e18;
    return DeviceTime(static_cast<DeviceTime::rep>(std::clamp(value, -longest, longest)));
}

} // namespace

SimulatedClock::SimulatedClock(RealTime start)
{
    _offset = -toDevice(toMoment(start));
}

SimulatedClock::Moment SimulatedClock::toMoment(RealTime real)
{
    return real - getEpoch();
}

DeviceTime SimulatedClock::toDevice(Moment moment) const
{
    return _offset + toMicroseconds(std::floor(moment.count() * _speed / nanosecondsPerMicrosecond));
}

SimulatedClock::Moment SimulatedClock::toMoment(DeviceTime device) const
{
    return Moment(static_cast<double>((device - _offset).count()) * nanosecondsPerMicrosecond / _speed);
}

SimulatedClock::RealTime SimulatedClock::toReal(DeviceTime device, RealTime now) const
{
    const auto ahead = toMoment(device) - toMoment(now);
    const auto longest = std::chrono::hours(1);
    if (ahead >= longest)
        return now + longest;
    return now + std::chrono::duration_cast<RealTime::duration>(std::max(ahead, Moment(0.0))) +
           std::chrono::nanoseconds(1);
}

bool SimulatedClock::setSpeed(double factor, DeviceTime device, RealTime now)
{
    if (!(factor >= minimumSpeed && factor <= maximumSpeed))
        return false;
    _speed = factor;
    _offset += device - toDevice(toMoment(now));
    return true;
}

} // namespace KesDriver
