#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/Outputs.h>

/// Whether a device can put out what is asked of it. A refusal names the channel, the value and the limit,
/// and for a sequence the step, counted from 1. Any thread.
namespace KesDriver {

inline constexpr unsigned channelCount = 6;
inline constexpr double minimumAuxDCVolts = 12.0;
inline constexpr double maximumAuxDCVolts = 300.0;
inline constexpr DeviceTime maximumStepDuration = std::chrono::hours(24);
inline constexpr DeviceTime maximumDebounce = std::chrono::seconds(10);

/// "IA", "IB", "IC", "UA", "UB", "UC", counted from 0; the empty text for any other number.
KES_EXPORT const char* getChannelName(unsigned channel);

/// Steady outputs.
KES_EXPORT Kes::Result checkOutputs(const OutputState& outputs, const OutputLimits& limits);

/// Every step, at both ends of its ramp.
KES_EXPORT Kes::Result checkSequence(const OutputSequence& sequence, const OutputLimits& limits);

/// A binary input that the device has.
KES_EXPORT Kes::Result checkInput(unsigned input, const OutputLimits& limits);

/// 12 to 300 V.
KES_EXPORT Kes::Result checkAuxDC(double volts);

} // namespace KesDriver
