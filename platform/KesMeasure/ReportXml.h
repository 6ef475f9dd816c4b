#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Chart.h>
#include <KesMeasure/MeasuredTest.h>
#include <KesMeasure/Outcome.h>
#include <KesMeasure/ResultTable.h>
#include <KesMeasure/TextLine.h>

#include <vector>

namespace xmlpp {
class Element;
}

/// The parts of a report as XML for its stylesheet: all values as the reader sees them, in the language of
/// the process, and the chart in the units of its drawing. The same data gives the same bytes. Any thread.
namespace KesMeasure::ReportXml {

/// The attributes "language" ("en-US" or "ru-RU"), "verdict" ("none", "passed", "failed", "stopped",
/// "fault"), "outcome" and "origin" ("device", "simulated", "unknown"), and of a test "device" and
/// "startedAt". `test` may be null: no test yet.
KES_EXPORT void addHead(xmlpp::Element& root, Verdict verdict, const Outcome& outcome,
                        const MeasuredTest* test);

/// A child of that name with a "line" (name, value) for each line.
KES_EXPORT void addLines(xmlpp::Element& parent, const char* name, const std::vector<TextLine>& lines);

/// A child "results" with the "column"s (name, title, kind: "number" or "word"), a "point" for each row, its
/// attributes named as the columns, and a "value" (name, value, verdict) for each value; points and values
/// have a "mark": "none", "passed" or "failed".
KES_EXPORT void addResults(xmlpp::Element& parent, const ResultTable& table);

/// A child "chart": its size and the titles of its axes, ticks "x" and "y" (at, label), the "band" and the "curve" (points), and a
/// "marker" (x, y, mark) for each point.
KES_EXPORT void addChart(xmlpp::Element& parent, const Chart& chart);

} // namespace KesMeasure::ReportXml
