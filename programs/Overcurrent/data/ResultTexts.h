#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesMeasure/ResultTable.h>

#include <string>

/// The results as texts for people, in the language of the process. Any thread.
namespace Overcurrent::ResultTexts {

/// A row for each point of the plan, measured or not; pick-up, drop-off and ratio as values. Dashes stand for
/// what has not been measured.
KesMeasure::ResultTable createTable(const TestResults& results);

/// One point in a few lines; of one that has not been measured, its state and time play no part.
std::string describePlanned(const TestResults& results, const PointResult& point);
std::string describe(const TestResults& results, const PointResult& point);

} // namespace Overcurrent::ResultTexts
