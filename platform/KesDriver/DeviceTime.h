#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>

namespace KesDriver {

/// Time on a device's own clock, in microseconds since the device was switched on; also a duration. A value;
/// the functions may be called on any thread.
using DeviceTime = std::chrono::microseconds;

/// Seconds, rounded to microseconds; not NaN. More than 1e9 s, also infinity, is 1e9 s: so long that it never
/// comes.
inline DeviceTime toDeviceTime(double seconds)
{
    constexpr double never = 1e9;
    return DeviceTime(std::llround(std::min(seconds, never) * 1e6));
}

/// In seconds, for formulas and files. Up to 1e9 s, `toDeviceTime` makes the same number of microseconds of
/// it again.
inline double toSeconds(DeviceTime time)
{
    return std::chrono::duration<double>(time).count();
}

} // namespace KesDriver
