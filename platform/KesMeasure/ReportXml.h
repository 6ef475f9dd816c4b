#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Chart.h>
#include <KesMeasure/MeasuredTest.h>
#include <KesMeasure/Outcome.h>
#include <KesMeasure/ResultTable.h>
#include <KesMeasure/TextLine.h>

#include <string>
#include <vector>

namespace xmlpp {
class Element;
}

/// The parts of a report as XML for its stylesheet: all values as the reader sees them, in the language of
/// the process, and the chart in the units of its drawing. The same data gives the same bytes. Any thread.
namespace KesMeasure::ReportXml {

/// "none", "passed", "failed", "stopped", "fault".
KES_EXPORT const char* wordOf(Verdict verdict);
/// "none", "passed", "failed".
KES_EXPORT const char* wordOf(Mark mark);
/// "device", "simulated", "unknown".
KES_EXPORT const char* wordOf(Origin origin);

/// The captions that all reports share; a further child "captions" by `addLines` has those of one test, which
/// take the place of these. The attributes "language" (such as "en-US"), "verdict", "outcome" and "origin",
/// and of a test "device", "startedAt", "changedByHand" when that is so, and lines "circumstances" with the
/// rest. `test` may be null: no test yet; `results` are its, as for the checksum.
KES_EXPORT void addHead(xmlpp::Element& root, Verdict verdict, const Outcome& outcome,
                        const MeasuredTest* test, const std::string& results);

/// A child of that name with a "line" (name, value) for each line.
KES_EXPORT void addLines(xmlpp::Element& parent, const char* name, const std::vector<TextLine>& lines);

/// A child "results" with the "column"s (name, title, kind: "number" or "word"), a "point" for each row, its
/// attributes named as the columns, and a "value" (name, value, verdict) for each value; points and values
/// have a "mark": "none", "passed" or "failed".
KES_EXPORT void addResults(xmlpp::Element& parent, const ResultTable& table);

/// A child "chart": its size and the titles of its axes, ticks "x" and "y" (at, label), the "band" and the
/// "curve" (points), and a "marker" (x, y, mark) for each point.
KES_EXPORT void addChart(xmlpp::Element& parent, const Chart& chart);

} // namespace KesMeasure::ReportXml
