#pragma once

#include <KesDriver/IKestoLink.h>

#include <chrono>
#include <string>

/// What a device says is data from outside: these functions decide what can be true. Any thread.
namespace KesDevice::KestoPlausibility {

bool isPlausible(const KesDriver::KestoIdentifer& identifer);
bool isPlausible(const KesDriver::KestoState& state);
/// A device time: not negative, and no longer than any device runs without being switched off.
bool isPlausible(KesDriver::DeviceTime time);
bool isPlausible(const KesDriver::ClockReading& reading);

/// Texts made presentable.
KesDriver::KestoIdentity correct(KesDriver::KestoIdentity identity);

/// With the link's time-out before it, outputs are off within three seconds whatever happens, with a margin
/// for a busy computer.
inline constexpr std::chrono::milliseconds longestReleaseTime{750};

/// The limits, or those of an ordinary device when they make no sense.
KesDriver::OutputLimits correct(const KesDriver::OutputLimits& limits);

/// Texts made presentable, at most 64 channels, and the device's own identity in place of any other.
KesDriver::KesAvary correct(KesDriver::KesAvary avary, const KesDriver::KestoIdentifer& identifer);

/// Valid UTF-8 on one line, of at most so many characters.
std::string correctText(const std::string& text, std::size_t longest);

} // namespace KesDevice::KestoPlausibility
