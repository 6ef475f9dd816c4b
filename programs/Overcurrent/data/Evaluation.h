#pragma once

#include <Overcurrent/data/TestResults.h>

#include <cstddef>
#include <optional>
#include <utility>

/// What the measured values mean. Any thread.
namespace Overcurrent::Evaluation {

/// One point against the characteristic; all times in seconds.
struct Point {
    /// Of the fault, in amperes.
    double current = 0.0;
    /// The one that should operate.
    StageId stage = StageId::First;
    double expected = 0.0;
    /// The ends of the band in which a healthy relay operates.
    double earliest = 0.0;
    double latest = 0.0;
    /// Only when measured.
    std::optional<double> measured;
    /// Measured minus expected.
    std::optional<double> deviation;
    std::optional<double> deviationPercent;
    /// Of several single times, the largest minus the smallest.
    std::optional<double> spread;
    /// The relay operated, and in time; of several times the worst counts.
    bool isPassed = false;
};

Point evaluate(const TestResults& results, const PointResult& point);

/// The pick-up value was found, and is close enough to Is, or may be within its interval.
bool isPickUpPassed(const TestResults& results);
/// The drop-off value to the pick-up value; only when both were found.
std::optional<double> ratio(const TestResults& results);
/// The least and the largest ratio that the intervals of both values allow.
std::optional<std::pair<double, double>> ratioInterval(const TestResults& results);
/// The drop-off value was found below the pick-up value, and not too far below, or may be within the
/// intervals.
bool isDropOffPassed(const TestResults& results);

std::size_t countPassed(const TestResults& results);

/// `None` while the test is under way.
KesMeasure::Verdict verdict(const TestResults& results);

} // namespace Overcurrent::Evaluation
