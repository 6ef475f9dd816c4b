#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesMeasure/ResultTable.h>

#include <string>

/// The results as texts for people, in the language of the process. Any thread.
namespace Overcurrent::ResultTexts {

/// A row for each measured point; pick-up, drop-off and ratio as values, dashes without a test.
KesMeasure::ResultTable createTable(const TestResults* results);

/// One point in a few lines.
std::string describe(const TestResults& results, const PointResult& point);

} // namespace Overcurrent::ResultTexts
