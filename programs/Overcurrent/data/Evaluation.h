#pragma once

#include <Overcurrent/data/TestResults.h>

#include <cstddef>
#include <optional>

/// What the measured values mean. Any thread.
namespace Overcurrent::Evaluation {

/// One point against the characteristic; all times in seconds.
struct Point {
    double current = 0.0;
    double expected = 0.0;
    double tolerance = 0.0;
    /// Only when measured.
    std::optional<double> measured;
    /// Measured minus expected.
    std::optional<double> deviation;
    std::optional<double> deviationPercent;
    /// The relay operated, and in time.
    bool isPassed = false;
};

Point evaluate(const TestResults& results, const PointResult& point);

/// The pick-up value was found, and is close enough to Is.
bool isPickUpPassed(const TestResults& results);
/// The drop-off value to the pick-up value; only when both were found.
std::optional<double> ratio(const TestResults& results);
/// The drop-off value was found below the pick-up value, and not too far below.
bool isDropOffPassed(const TestResults& results);

std::size_t countPassed(const TestResults& results);

/// `None` while the test is under way.
KesMeasure::Verdict verdict(const TestResults& results);

} // namespace Overcurrent::Evaluation
