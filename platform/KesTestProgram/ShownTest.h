#pragma once

#include <KesMeasure/Chart.h>
#include <KesMeasure/Outcome.h>
#include <KesMeasure/ResultTable.h>

namespace KesTestProgram {

/// What the window shows of a test, or of one that has not been made yet. A value.
struct ShownTest {
    KesMeasure::Outcome outcome;
    KesMeasure::Chart chart;
    KesMeasure::ResultTable table;
};

} // namespace KesTestProgram
