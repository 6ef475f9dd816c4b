#include <Overcurrent/data/ResultRow.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/text/OvercurrentText.h>
#include <Overcurrent/text/ScreenNumber.h>

namespace Overcurrent {

namespace {

using lng::Overcurrent::get;
using ScreenNumber::fixed;
using ScreenNumber::withSign;

Mark toMark(bool isPassed)
{
    return isPassed ? Mark::Passed : Mark::Failed;
}

std::string verdictText(MeasureState state, bool isPassed)
{
    if (state == MeasureState::NoOperation)
        return get("Verdict.noOperation");
    if (state == MeasureState::ContactEarly)
        return get("Verdict.contactEarly");
    return get(isPassed ? "Verdict.passed" : "Verdict.failed");
}

ResultValue rampValue(const char* nameKey, const TestResults* results, const std::optional<RampResult>& ramp,
                      bool isPassed)
{
    ResultValue value{get(nameKey), get("Results.notYet"), {}, Mark::None};
    if (!results || !ramp)
        return value;
    if (ramp->state == MeasureState::Measured)
        value.value = SettingsSummary::currentText(results->settings, ramp->multiple);
    value.verdict = verdictText(ramp->state, isPassed);
    value.mark = toMark(isPassed);
    return value;
}

} // namespace

std::vector<ResultRow> ResultRow::create(const TestResults& results)
{
    std::vector<ResultRow> rows;
    for (const auto& point : results.points) {
        const auto evaluated = Evaluation::evaluate(results, point);
        ResultRow row;
        row.number = std::to_string(rows.size() + 1);
        row.multiple = ScreenNumber::multiple(point.multiple);
        row.current = ScreenNumber::amperes(evaluated.current);
        row.expected = fixed(evaluated.expected, 3);
        row.measured = evaluated.measured ? fixed(*evaluated.measured, 3) : get("Results.notYet");
        row.deviation = evaluated.deviation ? withSign(*evaluated.deviation, 3) : get("Results.notYet");
        row.deviationPercent =
            evaluated.deviationPercent ? withSign(*evaluated.deviationPercent, 2) : get("Results.notYet");
        row.tolerance = "\u00B1" + fixed(evaluated.tolerance, 3);
        row.verdict = verdictText(point.state, evaluated.isPassed);
        row.mark = toMark(evaluated.isPassed);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<ResultValue> ResultValue::create(const TestResults* results)
{
    const bool isDropOffPassed = results && Evaluation::isDropOffPassed(*results);
    std::vector<ResultValue> values{
        rampValue("Results.pickUp", results, results ? results->pickUp : std::nullopt,
                  results && Evaluation::isPickUpPassed(*results)),
        rampValue("Results.dropOff", results, results ? results->dropOff : std::nullopt, isDropOffPassed)};
    ResultValue ratio{get("Results.ratio"), get("Results.notYet"), {}, Mark::None};
    if (const auto value = results ? Evaluation::ratio(*results) : std::nullopt) {
        ratio.value = fixed(*value, 3);
        ratio.verdict = get(isDropOffPassed ? "Verdict.passed" : "Verdict.failed");
        ratio.mark = toMark(isDropOffPassed);
    }
    values.push_back(std::move(ratio));
    return values;
}

} // namespace Overcurrent
