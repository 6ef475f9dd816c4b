#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>

namespace KesDriver {

/// Time on a device's own clock, in microseconds since the device was switched on; also a duration. Any thread.
using DeviceTime = std::chrono::microseconds;

/// Rounded to microseconds. What would not fit, also infinity, is so long that it never comes.
inline DeviceTime toDeviceTime(double seconds)
{
    constexpr double never = 1e9;
    return DeviceTime(std::llround(std::min(seconds, never) * 1e6));
}

inline double toSeconds(DeviceTime time)
{
    return std::chrono::duration<double>(time).count();
}

} // namespace KesDriver
