#include <Overcurrent/data/ResultTexts.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/NumberText.h>
#include <KesMeasure/ScreenNumber.h>
#include <KesMeasure/SpreadColumn.h>
#include <KesMeasure/StateText.h>

namespace Overcurrent::ResultTexts {

namespace {

using KesMeasure::Mark;
using KesMeasure::ResultTable;
using KesMeasure::stateText;
using KesMeasure::ScreenNumber::amperes;
using KesMeasure::ScreenNumber::fixed;
using KesMeasure::ScreenNumber::multiple;
using KesMeasure::ScreenNumber::withSign;
using lng::Overcurrent::get;

Mark toMark(bool isPassed)
{
    return isPassed ? Mark::Passed : Mark::Failed;
}

/// As a deviation from the expected time where both are the same, else the ends of the band.
std::string bandText(const Evaluation::Point& point)
{
    const std::string below = fixed(point.expected - point.earliest, 3);
    const std::string above = fixed(point.latest - point.expected, 3);
    if (below == above)
        return "\u00B1" + above;
    const int decimals = point.latest < 10.0 ? 3 : 2;
    return fixed(point.earliest, decimals) + "\u00A0\u2026\u00A0" + fixed(point.latest, decimals);
}

ResultTable::Value rampValue(const char* id, const TestResults* results,
                             const std::optional<RampResult>& ramp, bool isPassed)
{
    ResultTable::Value value{get(std::string("Results.") + id), get("Results.notYet"), {}, Mark::None, id};
    if (!results || !ramp)
        return value;
    if (ramp->state == MeasureState::Measured) {
        value.value = SettingsSummary::intervalText(results->settings, *ramp);
        value.number = ramp->getValue() * results->settings.settingCurrent;
        value.unit = get("Unit.ampere");
    }
    value.verdict = stateText(ramp->state, isPassed);
    value.mark = toMark(isPassed);
    return value;
}

ResultTable::Band pickUpBand(const TestResults& results)
{
    const double tolerance = results.plan.pickUpTolerancePercent / 100.0;
    const double current = results.settings.settingCurrent;
    return {amperes(current * (1.0 - tolerance)), amperes(current * (1.0 + tolerance)), get("Unit.ampere")};
}

const std::vector<ResultTable::Column>& columns()
{
    static constexpr const char* names[] = {"number",           "multiple",  "current",
                                            "expected",         "measured",  "deviation",
                                            "deviationPercent", "tolerance", "verdict"};
    static const auto made = [] {
        std::vector<ResultTable::Column> all;
        for (const char* name : names)
            all.push_back({name, get(std::string("Results.") + name), std::string(name) != "verdict",
                           std::string(name) == "tolerance"});
        return all;
    }();
    return made;
}

ResultTable::Row createRow(const TestResults& results, const PointResult& point, std::size_t number,
                           bool isMeasured)
{
    auto evaluated = Evaluation::evaluate(results, point);
    if (!isMeasured)
        evaluated.measured = evaluated.deviation = evaluated.deviationPercent = std::nullopt;
    const std::string none = get("Results.notYet");
    return {{std::to_string(number), multiple(point.multiple), amperes(evaluated.current),
             fixed(evaluated.expected, 3), evaluated.measured ? fixed(*evaluated.measured, 3) : none,
             evaluated.deviation ? withSign(*evaluated.deviation, 3) : none,
             evaluated.deviationPercent ? withSign(*evaluated.deviationPercent, 2) : none,
             bandText(evaluated), isMeasured ? stateText(point.state, evaluated.isPassed) : ""},
            isMeasured ? toMark(evaluated.isPassed) : Mark::None,
            "point." + Kes::NumberText::write(point.multiple),
            {fixed(evaluated.earliest, 3), fixed(evaluated.latest, 3), get("Unit.second")}};
}

std::vector<ResultTable::Value> createValues(const TestResults* results)
{
    if (results && !results->settings.hasRamps())
        return {};
    const bool isDropOffPassed = results && Evaluation::isDropOffPassed(*results);
    std::vector<ResultTable::Value> values{
        rampValue("pickUp", results, results ? results->pickUp : std::nullopt,
                  results && Evaluation::isPickUpPassed(*results)),
        rampValue("dropOff", results, results ? results->dropOff : std::nullopt, isDropOffPassed)};
    if (results)
        values.front().band = pickUpBand(*results);
    if (results && results->pickUp)
        values[0].row = results->plan.multiples.size();
    if (results && results->dropOff)
        values[1].row = results->plan.multiples.size() + 1;
    ResultTable::Value ratio{get("Results.ratio"), get("Results.notYet"), {}, Mark::None, "ratio"};
    if (const auto value = results ? Evaluation::ratio(*results) : std::nullopt) {
        const auto [least, most] = *Evaluation::ratioInterval(*results);
        ratio.value = fixed(*value, 3) + " (" + fixed(least, 3) + " \u2026 " + fixed(most, 3) + ")";
        ratio.number = *value;
        ratio.band = {fixed(results->plan.minimumRatio, 3), fixed(1.0, 3), ""};
        ratio.verdict = stateText(MeasureState::Measured, isDropOffPassed);
        ratio.mark = toMark(isDropOffPassed);
    }
    values.push_back(std::move(ratio));
    return values;
}

} // namespace

ResultTable createTable(const TestResults& results)
{
    ResultTable table{columns(), {}, createValues(&results)};
    std::vector<std::string> spreads;
    for (const auto& planned : results.plan.multiples) {
        const std::size_t index = table.rows.size();
        const bool isMeasured = index < results.points.size();
        const auto point = isMeasured ? results.points[index] : PointResult{planned};
        table.rows.push_back(createRow(results, point, index + 1, isMeasured));
        const auto spread = isMeasured ? Evaluation::evaluate(results, point).spread : std::nullopt;
        spreads.push_back(spread ? fixed(*spread, 3) : get("Results.notYet"));
    }
    if (results.plan.repetitions > 1)
        KesMeasure::addSpreadColumn(table, results.plan.repetitions, get("Unit.second"), spreads);
    return table;
}

std::string describePlanned(const TestResults& results, const PointResult& point)
{
    const auto evaluated = Evaluation::evaluate(results, point);
    return multiple(point.multiple) + " " + get("Unit.setting") + "\n" + get("Results.expected") + ": " +
           fixed(evaluated.expected, 3) + " (" + bandText(evaluated) + ")";
}

std::string describe(const TestResults& results, const PointResult& point)
{
    const auto evaluated = Evaluation::evaluate(results, point);
    const std::string measured = evaluated.measured ? fixed(*evaluated.measured, 3) : get("Results.notYet");
    return describePlanned(results, point) + "\n" + get("Results.measured") + ": " + measured + "\n" +
           stateText(point.state, evaluated.isPassed);
}

} // namespace Overcurrent::ResultTexts
