#include <Overcurrent/data/SettingsSummary.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/ScreenNumber.h>

#include <algorithm>

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

std::string contactsText(const RelaySettings& settings)
{
    switch (settings.rampContact) {
    case RampContactKind::ByStartContact:
        return format(get("Settings.tripAndStart"), settings.tripInput, settings.startInput);
    case RampContactKind::ByTripContact:
        return format(get("Settings.tripForBoth"), settings.tripInput);
    case RampContactKind::NoRamps:
        break;
    }
    return format(get("Settings.tripOnly"), settings.tripInput);
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
    const bool isAssigned = settings.toleranceKind == TimeToleranceKind::AssignedError;
    lines.push_back({get("Settings.tolerance"),
                     format(get(isAssigned ? "Settings.assignedError" : "Settings.toleranceValue"),
                            shortest(settings.tolerancePercent), shortest(settings.toleranceMilliseconds))});
    lines.push_back(
        {get("Settings.currentTolerance"), withUnit(settings.currentTolerancePercent, "Unit.percent")});
    lines.push_back({get("Settings.contacts"), contactsText(settings)});
    lines.push_back(
        {get("Settings.debounce"), shortest(settings.debounceMilliseconds) + " " + get("Unit.millisecond")});
    lines.push_back({get("Settings.resetTime"), withUnit(settings.resetTime, "Unit.second")});
    lines.push_back({get("Settings.withstand"),
                     format(get("Settings.withstandValue"), shortest(settings.continuousWithstand),
                            shortest(settings.tenSecondWithstand), shortest(settings.oneSecondWithstand))});
    return lines;
}

std::vector<Line> describe(const TestPlan& plan, const RelaySettings& settings)
{
    std::vector<Line> lines{{get("PlanView.multiples"), multiplesText(plan.multiples)},
                            {get("Plan.timeout"), withUnit(plan.timeout, "Unit.second")},
                            {get("Plan.pause"), withUnit(plan.pause, "Unit.second")}};
    if (plan.repetitions > 1)
        lines.push_back({get("Plan.repetitions"), std::to_string(plan.repetitions)});
    if (settings.hasRamps()) {
        lines.push_back({get("PlanView.pickUpRamp"), rampText(plan.pickUp)});
        lines.push_back({get("PlanView.dropOffRamp"), rampText(plan.dropOff)});
        lines.push_back({get("Plan.pickUpTolerance"), withUnit(plan.pickUpTolerancePercent, "Unit.percent")});
        lines.push_back({get("Plan.minimumRatio"), shortest(plan.minimumRatio)});
    }
    lines.push_back({get("Plan.noOperation"), get(plan.goesOn ? "Plan.goOn" : "Plan.end")});
    return lines;
}

std::string intervalText(const RelaySettings& settings, const RampResult& ramp)
{
    const auto [least, most] = std::minmax(ramp.without, ramp.multiple);
    return format(get("Results.interval.text"),
                  KesMeasure::ScreenNumber::amperes(ramp.getValue() * settings.settingCurrent),
                  KesMeasure::ScreenNumber::multiple(least), KesMeasure::ScreenNumber::multiple(most));
}

} // namespace Overcurrent::SettingsSummary
