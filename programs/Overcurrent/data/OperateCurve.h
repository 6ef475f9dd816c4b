#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/Stage.h>

#include <optional>

/// The operate-time characteristic of a time-overcurrent stage. Any thread.
namespace Overcurrent::OperateCurve {

/// Above this multiple of Is a dependent-time characteristic continues as a constant time.
inline constexpr double endOfDependentTime = 20.0;

/// The time in seconds in which the stage operates at `multiple` times Is. At or below Is it does not
/// operate.
///
/// Dependent time of IEC 60255-151: t = TMS * k / ((I/Is)^a - 1) with k and a of the curve: standard inverse
/// 0.14 and 0.02, very inverse 13.5 and 1, extremely inverse 80 and 2; and of BS 142: long-time inverse 120
/// and 1. Of IEEE C37.112: t = TMS * (k / ((I/Is)^a - 1) + c): moderately inverse 0.0515, 0.02 and 0.114,
/// very inverse 19.61, 2 and 0.491, extremely inverse 28.2, 2 and 0.1217. From 20 times Is on, the time at 20
/// times Is. Definite time: the same time at every current above Is.
///
/// A table: between two pairs a straight line on logarithmic axes, from the last one on its time. Below the
/// first one the stage does not operate.
std::optional<double> operateTime(const Stage& stage, double multiple);

/// How far in seconds an operate time at a multiple of Is may lie from the expected one: the relative
/// tolerance or the absolute one, whichever is larger. The relative one of the assigned-error kind is the
/// assigned error above 10 times Is, 1.5 times that above 5 times, and 2.5 times up to there.
double tolerance(const RelaySettings& settings, double multiple, double expectedTime);

} // namespace Overcurrent::OperateCurve
