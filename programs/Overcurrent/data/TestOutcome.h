#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesMeasure/Outcome.h>

/// How a test ended, in one line for people, in the language of the process. Any thread.
namespace Overcurrent::TestOutcome {

/// Null: no test yet, or one whose results were lost with its file.
KesMeasure::Outcome create(const TestResults* results, bool areResultsLost = false);

} // namespace Overcurrent::TestOutcome
