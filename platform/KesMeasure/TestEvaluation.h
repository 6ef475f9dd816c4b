#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Chart.h>
#include <KesMeasure/ITestDefinition.h>
#include <KesMeasure/Outcome.h>
#include <KesMeasure/ResultTable.h>
#include <KesMeasure/TestRecord.h>
#include <KesMeasure/TextLine.h>

#include <string>
#include <vector>

/// What the readings of a test mean, for the window and the report, in the language of the process. Any
/// thread.
///
/// `record` may be null: no test yet; it belongs to the plan otherwise.
namespace KesMeasure::TestEvaluation {

KES_EXPORT Verdict judge(const MeasurementPlan& plan, const TestRecord& record);

/// A row for each measurement of the plan, measured or not; with the spread when each is made several times.
KES_EXPORT ResultTable createTable(const MeasurementPlan& plan, const TestRecord* record,
                                   unsigned repetitions = 1);

/// The deviations from the expected values in percent of the tolerance on their side, so that values of
/// different units stand beside each other, over the numbers of the table's rows. What was not measured
/// stands at the upper end.
KES_EXPORT Chart createChart(const MeasurementPlan& plan, const TestRecord* record);

/// `areResultsLost`: there was a test, but its results could not be read.
KES_EXPORT Outcome createOutcome(const MeasurementPlan& plan, const TestRecord* record,
                                 bool areResultsLost = false);

/// "8 results of 2026-11-20 14:05".
KES_EXPORT std::string summarize(const TestRecord* record);

/// The data of a report for the stylesheet "report/measurements.xsl": all values as the reader sees them. The
/// same data gives the same bytes. `nameplate`: the tester and the relay, in addition to the settings.
KES_EXPORT std::string createReport(const std::string& title, const ITestDefinition& test,
                                    const TestRecord* record, bool areResultsLost = false,
                                    const std::vector<TextLine>& nameplate = {});

} // namespace KesMeasure::TestEvaluation
