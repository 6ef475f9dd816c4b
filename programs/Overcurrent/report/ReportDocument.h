#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesMeasure/TextLine.h>

#include <string>
#include <vector>

namespace Overcurrent {

/// The data of a report as XML for the stylesheet "report/test.xsl": all values as the reader sees them, in
/// the language of the process, and the chart in the units of its drawing. The same data gives the same
/// bytes. Any thread.
class ReportDocument {
public:
    /// `results` may be null: no test yet, or one whose results were lost with its file; then there is no
    /// table of results. `nameplate`: who and what has been tested, in addition to the settings.
    static std::string create(const RelaySettings& settings, const TestPlan& plan, const TestResults* results,
                              bool areResultsLost = false,
                              const std::vector<KesMeasure::TextLine>& nameplate = {});
};

} // namespace Overcurrent
