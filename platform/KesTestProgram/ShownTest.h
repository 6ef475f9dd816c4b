#pragma once

#include <KesMeasure/Chart.h>
#include <KesMeasure/Outcome.h>
#include <KesMeasure/ResultTable.h>

namespace KesTestProgram {

/// What the window shows of a test, or of one that has not been made yet; texts are in the language of the
/// process. A value. Any thread.
struct ShownTest {
    KesMeasure::Outcome outcome;
    KesMeasure::Chart chart;
    KesMeasure::ResultTable table;
};

} // namespace KesTestProgram
