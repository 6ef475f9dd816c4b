#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesMeasure/Chart.h>

/// The chart of a test: operate time against multiples of Is. Any thread.
namespace Overcurrent::TestChart {

/// `results` may be null: no test yet. With results, `settings` and `plan` are theirs. A point without an
/// operate time stands at the time-out, one that has not been measured where it is expected.
KesMeasure::Chart create(const RelaySettings& settings, const TestPlan& plan, const TestResults* results);

} // namespace Overcurrent::TestChart
