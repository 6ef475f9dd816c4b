#include <KesMeasure/TestEvaluation.h>

#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ReportXml.h>
#include <KesMeasure/ScreenNumber.h>
#include <KesMeasure/XmlAttributes.h>

#include <KesCommon/Language.h>
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

const char* verdictText(const Reading& reading, bool isPassed)
{
    switch (reading.state) {
    case MeasureState::NoOperation:
        return get("State.noOperation");
    case MeasureState::ContactEarly:
        return get("State.contactEarly");
    case MeasureState::NotReset:
        return get("State.notReset");
    case MeasureState::Measured:
        break;
    }
    return get(isPassed ? "State.passed" : "State.failed");
}

std::string bandText(const PlannedMeasurement& planned)
{
    return fixed(planned.lower, planned.decimals) + " \u2026 " + fixed(planned.upper, planned.decimals);
}

ResultTable::Row createRow(const PlannedMeasurement& planned, std::size_t number, const Reading* reading)
{
    ResultTable::Row row{{std::to_string(number), planned.object, planned.quantity,
                          fixed(planned.expected, planned.decimals), bandText(planned), "", "", planned.unit,
                          ""},
                         Mark::None};
    if (!reading)
        return row;
    const bool isPassed = planned.isPassed(*reading);
    if (reading->state == MeasureState::Measured) {
        row.cells[5] = fixed(reading->value, planned.decimals);
        row.cells[6] = ScreenNumber::withSign(reading->value - planned.expected, planned.decimals);
    }
    row.cells[8] = verdictText(*reading, isPassed);
    row.mark = isPassed ? Mark::Passed : Mark::Failed;
    return row;
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
    point.text += std::string("\n") + verdictText(*reading, isPassed);
    return point;
}

const char* summaryFormOf(std::size_t count)
{
    if (lng::language != lng::Russian)
        return count == 1 ? "Summary.one" : "Summary.many";
    const bool isTeen = count / 10 % 10 == 1;
    if (count % 10 == 1 && !isTeen)
        return "Summary.one";
    return count % 10 >= 2 && count % 10 <= 4 && !isTeen ? "Summary.few" : "Summary.many";
}

} // namespace

Verdict judge(const MeasurementPlan& plan, const TestRecord& record)
{
    switch (record.end) {
    case RunEnd::Running:
        return Verdict::None;
    case RunEnd::Stopped:
        return Verdict::Stopped;
    case RunEnd::Fault:
        return Verdict::Fault;
    case RunEnd::Ended:
        return Verdict::Failed;
    case RunEnd::Complete:
        break;
    }
    const bool isPassed = !plan.empty() && countPassed(plan, record) == plan.size();
    return isPassed ? Verdict::Passed : Verdict::Failed;
}

ResultTable createTable(const MeasurementPlan& plan, const TestRecord* record)
{
    ResultTable table;
    for (const char* name :
         {"number", "object", "quantity", "expected", "band", "measured", "deviation", "unit", "verdict"}) {
        const std::string column = name;
        const bool isWord =
            column == "object" || column == "quantity" || column == "unit" || column == "verdict";
        table.columns.push_back({column, get("Column." + column), !isWord});
    }
    for (std::size_t i = 0; i < plan.size(); ++i)
        table.rows.push_back(createRow(plan[i], i + 1, readingOf(record, i)));
    return table;
}

Chart createChart(const MeasurementPlan& plan, const TestRecord* record)
{
    Chart chart;
    chart.title = get("Deviations.title");
    chart.xTitle = get("Deviations.number");
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
        return {get(areResultsLost ? "Outcome.lost" : "Outcome.noTest"), Mark::None};
    const auto verdict = judge(plan, *record);
    const std::string title = Outcome::getTitle(verdict);
    const std::size_t passed = countPassed(plan, *record);
    if (record->end == RunEnd::Complete)
        return {format(get("Outcome.whole"), title, passed, plan.size()), Outcome::getMark(verdict)};
    return {format(get("Outcome.part"), title, record->readings.size(), plan.size(), passed),
            Outcome::getMark(verdict)};
}

std::string summarize(const TestRecord* record)
{
    if (!record || record->readings.empty())
        return get("Summary.none");
    const std::size_t count = record->readings.size();
    // Without the seconds.
    return format(get(summaryFormOf(count)), count, record->startedAt.substr(0, 16));
}

std::string createReport(const std::string& title, const ITestDefinition& test, const TestRecord* record,
                         bool areResultsLost)
{
    const auto plan = test.createPlan();
    return writeXml("report", [&](xmlpp::Element& root) {
        root.set_attribute("language", lng::language == lng::Russian ? "ru-RU" : "en-US");
        root.set_attribute("subtitle", title);
        root.set_attribute("verdict", ReportXml::wordOf(record ? judge(plan, *record) : Verdict::None));
        root.set_attribute("outcome", createOutcome(plan, record, areResultsLost).text);
        root.set_attribute("origin", ReportXml::wordOf(record ? record->origin : Origin::Device));
        if (record) {
            root.set_attribute("device", record->device);
            root.set_attribute("startedAt", record->startedAt);
        }
        const auto table = createTable(plan, record);
        ReportXml::addLines(root, "settings", test.describe());
        ReportXml::addResults(root, table);
        const auto chart = createChart(plan, record);
        ReportXml::addChart(root, chart);
        root.set_attribute("xTitle", chart.xTitle);
        root.set_attribute("yTitle", chart.yTitle);
    });
}

} // namespace KesMeasure::TestEvaluation
