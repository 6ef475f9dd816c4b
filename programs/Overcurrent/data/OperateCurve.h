#pragma once

#include <Overcurrent/data/RelaySettings.h>

#include <optional>

/// The operate-time characteristic of a time-overcurrent stage. Any thread.
namespace Overcurrent::OperateCurve {

/// Above this multiple of Is a dependent-time characteristic goes on as a constant time.
inline constexpr double endOfDependentTime = 20.0;

/// The time in seconds in which the stage operates at `multiple` times Is. At or below Is it does not
/// operate.
///
/// Dependent time, IEC 60255-151: t = TMS * k / ((I/Is)^a - 1) with k and a of the curve: standard inverse
/// 0.14 and 0.02, very inverse 13.5 and 1, extremely inverse 80 and 2, long-time inverse 120 and 1; from 20
/// times Is on, the time at 20 times Is. Definite time: the same time at every current above Is.
std::optional<double> operateTime(const RelaySettings& settings, double multiple);

/// How far in seconds an operate time may lie from the expected one: the relative tolerance or the absolute
/// one, whichever is larger.
double tolerance(const RelaySettings& settings, double expectedTime);

} // namespace Overcurrent::OperateCurve
