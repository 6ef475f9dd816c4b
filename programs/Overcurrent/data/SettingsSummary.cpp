#include <Overcurrent/data/SettingsSummary.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/ScreenNumber.h>

namespace Overcurrent::SettingsSummary {

namespace {

using Kes::StringHelper::format;
using KesMeasure::ScreenNumber::shortest;
using lng::Overcurrent::get;

std::string withUnit(double value, const char* unitKey)
{
    return shortest(value) + " " + get(unitKey);
}

std::string rampText(const Ramp& ramp)
{
    return format(get("Settings.ramp"), shortest(ramp.from), shortest(ramp.to), shortest(ramp.step),
                  shortest(ramp.dwell));
}

std::string multiplesText(const std::vector<double>& multiples)
{
    std::string text;
    for (const double multiple : multiples)
        text += (text.empty() ? "" : "; ") + shortest(multiple);
    return text + " " + get("Unit.setting");
}

} // namespace

std::vector<Line> describe(const RelaySettings& settings)
{
    const bool isDefinite = settings.curve == CurveKind::DefiniteTimeCurve;
    const std::string curve = get("Curve." + std::to_string(static_cast<int>(settings.curve)));
    std::vector<Line> lines{
        {get("Settings.curve"), curve},
        {get("Settings.nominalCurrent"), withUnit(settings.nominalCurrent, "Unit.ampere")},
        {get("Settings.settingCurrent"), withUnit(settings.settingCurrent, "Unit.ampere")}};
    if (isDefinite)
        lines.push_back({get("Settings.definiteTime"), withUnit(settings.definiteTime, "Unit.second")});
    else
        lines.push_back({get("Settings.timeMultiplier"), shortest(settings.timeMultiplier)});
    lines.push_back({get("Settings.tolerance"),
                     format(get("Settings.toleranceValue"), shortest(settings.tolerancePercent),
                            shortest(settings.toleranceMilliseconds))});
    return lines;
}

std::vector<Line> describe(const TestPlan& plan)
{
    return {{get("PlanView.multiples"), multiplesText(plan.multiples)},
            {get("Plan.timeout"), withUnit(plan.timeout, "Unit.second")},
            {get("Plan.pause"), withUnit(plan.pause, "Unit.second")},
            {get("PlanView.pickUpRamp"), rampText(plan.pickUp)},
            {get("PlanView.dropOffRamp"), rampText(plan.dropOff)},
            {get("Plan.pickUpTolerance"), withUnit(plan.pickUpTolerancePercent, "Unit.percent")},
            {get("Plan.minimumRatio"), shortest(plan.minimumRatio)}};
}

std::string currentText(const RelaySettings& settings, double multiple)
{
    return format(get("Results.current.text"),
                  KesMeasure::ScreenNumber::amperes(multiple * settings.settingCurrent),
                  KesMeasure::ScreenNumber::multiple(multiple));
}

} // namespace Overcurrent::SettingsSummary
