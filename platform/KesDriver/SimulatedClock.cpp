#include <KesDriver/SimulatedClock.h>

#include <algorithm>
#include <cmath>

namespace KesDriver {

namespace {

using RealMicroseconds = std::chrono::duration<double, std::micro>;

} // namespace

DeviceTime SimulatedClock::toDevice(RealTime real) const
{
    const double passed = RealMicroseconds(real - _realBase).count() * _speed;
    const auto rest = static_cast<double>((DeviceTime::max() - _deviceBase).count() / 2);
    return _deviceBase + DeviceTime(static_cast<DeviceTime::rep>(std::clamp(passed, 0.0, rest)));
}

SimulatedClock::RealTime SimulatedClock::toReal(DeviceTime device, RealTime now) const
{
    const RealMicroseconds ahead(static_cast<double>((device - toDevice(now)).count()) / _speed);
    const auto longest = std::chrono::hours(1);
    if (ahead >= longest)
        return now + longest;
    return now + std::chrono::duration_cast<RealTime::duration>(std::max(ahead, RealMicroseconds(0.0))) +
           std::chrono::microseconds(1);
}

bool SimulatedClock::setSpeed(double factor, RealTime now)
{
    if (!(factor >= minimumSpeed && factor <= maximumSpeed))
        return false;
    _deviceBase = toDevice(now);
    _realBase = now;
    _speed = factor;
    return true;
}

} // namespace KesDriver
