#include <KesMeasure/TestEvaluation.h>

#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ReportXml.h>
#include <KesMeasure/ScreenNumber.h>
#include <KesMeasure/Series.h>
#include <KesMeasure/SpreadColumn.h>
#include <KesMeasure/StateText.h>
#include <KesMeasure/XmlAttributes.h>

#include <KesCommon/StringHelper.h>

#include <libxml++/libxml++.h>

#include <algorithm>
#include <cmath>

namespace KesMeasure::TestEvaluation {

namespace {

using Kes::StringHelper::format;
using lng::Measure::get;
using ScreenNumber::fixed;

/// The ends of the chart's axis, in percent of the tolerance. What lies beyond stands at the end.
constexpr double chartEnd = 200.0;

const Reading* readingOf(const TestRecord* record, std::size_t index)
{
    return record && index < record->readings.size() ? &record->readings[index] : nullptr;
}

std::size_t countPassed(const MeasurementPlan& plan, const TestRecord& record)
{
    std::size_t passed = 0;
    for (std::size_t i = 0; i < plan.size() && i < record.readings.size(); ++i)
        passed += plan[i].isPassed(record.readings[i]) ? 1U : 0U;
    return passed;
}

ResultTable::Band bandOf(const PlannedMeasurement& planned)
{
    return {fixed(planned.lower, planned.decimals), fixed(planned.upper, planned.decimals), planned.unit};
}

std::string bandText(const PlannedMeasurement& planned)
{
    const auto band = bandOf(planned);
    return band.from + " \u2026 " + band.to;
}

ResultTable::Row createRow(const PlannedMeasurement& planned, std::size_t number, const Reading* reading)
{
    ResultTable::Row row{{std::to_string(number), planned.object, planned.quantity,
                          fixed(planned.expected, planned.decimals), bandText(planned), "", "", planned.unit,
                          ""},
                         Mark::None,
                         planned.id,
                         bandOf(planned)};
    if (!reading)
        return row;
    const bool isPassed = planned.isPassed(*reading);
    if (reading->state == MeasureState::Measured) {
        row.cells[5] = fixed(reading->value, planned.decimals);
        row.cells[6] = ScreenNumber::withSign(reading->value - planned.expected, planned.decimals);
    }
    row.cells[8] = stateText(reading->state, isPassed);
    row.mark = isPassed ? Mark::Passed : Mark::Failed;
    return row;
}

std::string spreadText(const PlannedMeasurement& planned, const Reading* reading)
{
    const bool isMeasured = reading && reading->state == MeasureState::Measured;
    return isMeasured ? fixed(Series::getSpread(reading->singles), planned.decimals) : std::string();
}

double percentOfTolerance(const PlannedMeasurement& planned, double value)
{
    const double deviation = value - planned.expected;
    const double tolerance =
        deviation < 0.0 ? planned.expected - planned.lower : planned.upper - planned.expected;
    const double percent = tolerance > 0.0    ? deviation / tolerance * 100.0
                           : deviation == 0.0 ? 0.0
                                              : chartEnd;
    return std::clamp(percent, -chartEnd, chartEnd);
}

ChartPoint createPoint(const PlannedMeasurement& planned, std::size_t number, const Reading* reading)
{
    ChartPoint point{{static_cast<double>(number), 0.0},
                     ChartPoint::State::Planned,
                     planned.object + ", " + planned.quantity + "\n" + bandText(planned) + " " +
                         planned.unit};
    if (!reading)
        return point;
    const bool isPassed = planned.isPassed(*reading);
    point.state = isPassed ? ChartPoint::State::Passed : ChartPoint::State::Failed;
    if (reading->state == MeasureState::Measured) {
        point.position.y = percentOfTolerance(planned, reading->value);
        point.text += "\n" + fixed(reading->value, planned.decimals) + " " + planned.unit;
    } else {
        // Outside of the band, in which it would look like a good one.
        point.position.y = chartEnd;
        point.state = ChartPoint::State::NotOperated;
    }
    point.text += std::string("\n") + stateText(reading->state, isPassed);
    return point;
}

} // namespace

Verdict judge(const MeasurementPlan& plan, const TestRecord& record)
{
    return record.judge(!plan.empty() && countPassed(plan, record) == plan.size());
}

ResultTable createTable(const MeasurementPlan& plan, const TestRecord* record, unsigned repetitions)
{
    ResultTable table;
    for (const char* name :
         {"number", "object", "quantity", "expected", "band", "measured", "deviation", "unit", "verdict"}) {
        const std::string column = name;
        const bool isWord =
            column == "object" || column == "quantity" || column == "unit" || column == "verdict";
        table.columns.push_back({column, get("Column." + column), !isWord, column == "band"});
    }
    for (std::size_t i = 0; i < plan.size(); ++i)
        table.rows.push_back(createRow(plan[i], i + 1, readingOf(record, i)));
    if (repetitions == 1)
        return table;
    std::vector<std::string> spreads;
    for (std::size_t i = 0; i < plan.size(); ++i)
        spreads.push_back(spreadText(plan[i], readingOf(record, i)));
    addSpreadColumn(table, "", spreads);
    return table;
}

Chart createChart(const MeasurementPlan& plan, const TestRecord* record)
{
    Chart chart;
    chart.title = get("Deviations.title");
    chart.xTitle = get("Column.number");
    chart.yTitle = get("Deviations.percent");
    const double end = static_cast<double>(plan.size()) + 1.0;
    chart.x = Axis::linear(0.0, end);
    chart.y = Axis::linear(-chartEnd, chartEnd);
    for (const double x : {0.0, chart.x.getMaximum()}) {
        chart.expected.push_back({x, 0.0});
        chart.upper.push_back({x, 100.0});
        chart.lower.push_back({x, -100.0});
    }
    for (std::size_t i = 0; i < plan.size(); ++i)
        chart.points.push_back(createPoint(plan[i], i + 1, readingOf(record, i)));
    return chart;
}

Outcome createOutcome(const MeasurementPlan& plan, const TestRecord* record, bool areResultsLost)
{
    if (!record)
        return Outcome::withoutTest(areResultsLost);
    const auto verdict = judge(plan, *record);
    const std::string title = Outcome::getTitle(verdict);
    const std::size_t passed = countPassed(plan, *record);
    const std::string text =
        record->end == RunEnd::Complete
            ? format(get("Outcome.whole"), title, passed, plan.size())
            : format(get("Outcome.part"), title, record->readings.size(), plan.size(), passed);
    return Outcome{text, Outcome::getMark(verdict)}.withCircumstances(*record);
}

std::string summarize(const TestRecord* record)
{
    return record && !record->readings.empty() ? record->summarize(record->readings.size())
                                               : get("Summary.none");
}

std::string createReport(const std::string& title, const ITestDefinition& test, const TestRecord* record,
                         bool areResultsLost, const std::vector<TextLine>& nameplate)
{
    const auto plan = test.createPlan();
    return writeXml("report", [&](xmlpp::Element& root) {
        const auto verdict = record ? judge(plan, *record) : Verdict::None;
        ReportXml::addHead(root, verdict, createOutcome(plan, record, areResultsLost), record,
                           record ? record->getResultsXml(plan) : std::string());
        root.set_attribute("subtitle", title);
        ReportXml::addLines(root, "nameplate", nameplate);
        ReportXml::addLines(root, "settings", test.describe());
        ReportXml::addResults(root, createTable(plan, record, test.getRepetitions()));
        ReportXml::addChart(root, createChart(plan, record));
    });
}

} // namespace KesMeasure::TestEvaluation
