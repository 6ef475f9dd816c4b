#include <Overcurrent/data/ResultTexts.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/data/StageTimes.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/UnitText.h>
#include <KesMeasure/ScreenNumber.h>
#include <KesMeasure/SpreadColumn.h>
#include <KesMeasure/StateText.h>

#include <algorithm>
#include <iterator>

namespace Overcurrent::ResultTexts {

namespace {

using KesMeasure::Mark;
using KesMeasure::MeasureState;
using KesMeasure::ResultTable;
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

double pickUpCurrentOf(const TestResults& results)
{
    return StageTimes::pickUpCurrent(results.settings, results.plan.getRampCase());
}

std::string verdictText(MeasureState state, bool isPassed)
{
    return state == MeasureState::ContactEarly ? get("Results.contactEarly")
                                               : KesMeasure::stateText(state, isPassed);
}

/// With several faults or stages it says with which fault it has been measured, and whose value it is.
std::string rampName(const std::string& id, const TestResults* results)
{
    const auto isUsed = [](const Stage& stage) { return stage.isUsed; };
    if (!results ||
        (results->plan.faults.size() < 2 &&
         std::count_if(results->settings.stages.begin(), results->settings.stages.end(), isUsed) < 2))
        return get("Plan." + id);
    const auto faultCase = results->plan.getRampCase();
    const auto stage = StageTimes::firstToPickUp(results->settings, faultCase);
    return Kes::StringHelper::format(get("Results.withFault"), std::string(get("Plan." + id)),
                                     Faults::nameOf(faultCase.fault),
                                     stage ? SettingsSummary::nameOf(*stage) : std::string());
}

ResultTable::Value rampValue(const char* id, const TestResults* results,
                             const std::optional<RampResult>& ramp, bool isPassed)
{
    ResultTable::Value value{rampName(id, results), get("Results.notYet"), {}, Mark::None, id};
    if (!results || !ramp)
        return value;
    if (ramp->state == MeasureState::Measured) {
        const double current = pickUpCurrentOf(*results);
        value.value = SettingsSummary::intervalText(current, *ramp);
        value.number = Kes::NumberText::read(amperes(ramp->getValue() * current));
        value.unit = lng::Unit::ampere.get();
    }
    value.verdict = verdictText(ramp->state, isPassed);
    value.mark = toMark(isPassed);
    return value;
}

ResultTable::Band pickUpBand(const TestResults& results)
{
    const double tolerance = results.plan.pickUpTolerancePercent / 100.0;
    const double current = pickUpCurrentOf(results);
    return {amperes(current * (1.0 - tolerance)), amperes(current * (1.0 + tolerance)),
            lng::Unit::ampere.get()};
}

const std::vector<ResultTable::Column>& columns()
{
    static constexpr const char* names[] = {
        "number",   "fault",     "multiple",         "current",   "stage",  "expected",
        "measured", "deviation", "deviationPercent", "tolerance", "verdict"};
    static constexpr const char* words[] = {"fault", "stage", "verdict"};
    const auto isWord = [](const std::string& name) {
        return std::find(std::begin(words), std::end(words), name) != std::end(words);
    };
    static const auto made = [&] {
        std::vector<ResultTable::Column> all;
        for (const char* name : names)
            all.push_back(
                {name, get(std::string("Results.") + name), !isWord(name), std::string(name) == "tolerance"});
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
    return {{std::to_string(number), Faults::nameOf(point.fault), multiple(point.multiple),
             amperes(evaluated.current), SettingsSummary::nameOf(evaluated.stage),
             fixed(evaluated.expected, 3), evaluated.measured ? fixed(*evaluated.measured, 3) : none,
             evaluated.deviation ? withSign(*evaluated.deviation, 3) : none,
             evaluated.deviationPercent ? withSign(*evaluated.deviationPercent, 2) : none,
             bandText(evaluated), isMeasured ? verdictText(point.state, evaluated.isPassed) : ""},
            isMeasured ? toMark(evaluated.isPassed) : Mark::None,
            "point." + Faults::wordOf(point.fault) + "." + Kes::NumberText::write(point.multiple),
            {fixed(evaluated.earliest, 3), fixed(evaluated.latest, 3), lng::Unit::second.get()},
            {{"fault", Faults::wordOf(point.fault)}}};
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
        values[0].row = results->plan.countPoints();
    if (results && results->dropOff)
        values[1].row = results->plan.countPoints() + 1;
    ResultTable::Value ratio{get("Results.ratio"), get("Results.notYet"), {}, Mark::None, "ratio"};
    if (const auto value = results ? Evaluation::ratio(*results) : std::nullopt) {
        const auto [least, most] = *Evaluation::ratioInterval(*results);
        ratio.value = fixed(*value, 3) + " (" + fixed(least, 3) + " \u2026 " + fixed(most, 3) + ")";
        ratio.number = Kes::NumberText::read(fixed(*value, 3));
        ratio.band = {fixed(results->plan.minimumRatio, 3), fixed(1.0, 3), ""};
        ratio.verdict = verdictText(MeasureState::Measured, isDropOffPassed);
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
    for (const auto& planned : results.plan.getPoints()) {
        const std::size_t index = table.rows.size();
        const bool isMeasured = index < results.points.size();
        const auto point = isMeasured ? results.points[index] : PointResult{planned};
        table.rows.push_back(createRow(results, point, index + 1, isMeasured));
        const auto spread = isMeasured ? Evaluation::evaluate(results, point).spread : std::nullopt;
        spreads.push_back(spread ? fixed(*spread, 3) : get("Results.notYet"));
    }
    if (results.plan.repetitions == 1)
        return table;
    KesMeasure::addSpreadColumn(table, lng::Unit::second.get(), spreads);
    // The window has no room for one more.
    for (auto& column : table.columns)
        column.isInWindow = column.name != "current" && column.name != "deviation";
    return table;
}

std::string describePlanned(const TestResults& results, const PointResult& point)
{
    const auto evaluated = Evaluation::evaluate(results, point);
    return Faults::nameOf(point.fault) + ", " + multiple(point.multiple) + " " +
           lng::Unit::timesSetting.get() + ", " + SettingsSummary::nameOf(evaluated.stage) + "\n" +
           get("Results.expected") + ": " + fixed(evaluated.expected, 3) + " (" + bandText(evaluated) + ")";
}

std::string describe(const TestResults& results, const PointResult& point)
{
    const auto evaluated = Evaluation::evaluate(results, point);
    const std::string measured = evaluated.measured ? fixed(*evaluated.measured, 3) : get("Results.notYet");
    return describePlanned(results, point) + "\n" + get("Results.measured") + ": " + measured + "\n" +
           verdictText(point.state, evaluated.isPassed);
}

} // namespace Overcurrent::ResultTexts
