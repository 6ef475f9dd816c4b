#include <Overcurrent/data/SettingsSummary.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>
#include <KesCommon/UnitText.h>
#include <KesMeasure/ScreenNumber.h>
#include <KesTreeRelay/RelayNames.h>

#include <algorithm>

namespace Overcurrent::SettingsSummary {

namespace {

using Kes::StringHelper::format;
using KesMeasure::ScreenNumber::shortest;
using lng::Overcurrent::get;
namespace RelayNames = KesTree::RelayNames;

std::string withUnit(double value, const lng::Text& unit)
{
    return shortest(value) + " " + unit.get();
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
    return text + " " + lng::Unit::timesSetting.get();
}

std::string curveText(const Stage& stage)
{
    const std::string curve = RelayNames::curves[static_cast<std::size_t>(stage.curve)].get();
    return stage.curve == CurveKind::TableCurve ? curve + " " + KesTree::CurveTable::show(stage.table)
                                                : curve;
}

std::string stageText(const Stage& stage)
{
    std::string text = withUnit(stage.settingCurrent, lng::Unit::ampere);
    if (stage.curve == CurveKind::DefiniteTimeCurve)
        text += ", " + withUnit(stage.definiteTime, lng::Unit::second);
    else if (stage.curve != CurveKind::TableCurve)
        text += ", TMS " + shortest(stage.timeMultiplier);
    if (stage.direction == DirectionKind::NonDirectional)
        return text;
    const bool isForward = stage.direction == DirectionKind::ForwardOnly;
    return text + ", " + get(isForward ? "Direction.forward" : "Direction.reverse");
}

std::string faultsText(const TestPlan& plan, const RelaySettings& settings)
{
    std::string text;
    for (const auto fault : plan.faults)
        text += (text.empty() ? "" : "; ") + Faults::nameOf(fault);
    if (!settings.isDirectional())
        return text;
    const bool isForward = plan.direction == FaultDirection::Forward;
    return text + ", " + get(isForward ? "Direction.forward" : "Direction.reverse");
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
    std::vector<Line> lines{
        {RelayNames::nominalCurrent.get(), withUnit(settings.nominalCurrent, lng::Unit::ampere)}};
    for (const auto stage : allStages)
        if (settings[stage].isUsed) {
            lines.push_back({nameOf(stage), stageText(settings[stage])});
            lines.push_back({format(get("Settings.curveOf"), nameOf(stage)), curveText(settings[stage])});
        }
    if (settings.isDirectional())
        lines.push_back({get("Settings.directional"),
                         format(get("Settings.directionalValue"), shortest(settings.characteristicAngle),
                                shortest(settings.nominalVoltage))});
    const bool isAssigned = settings.toleranceKind == TimeToleranceKind::AssignedError;
    lines.push_back({RelayNames::timeTolerance.get(),
                     format(get(isAssigned ? "Settings.assignedError" : "Settings.toleranceValue"),
                            shortest(settings.tolerancePercent), shortest(settings.toleranceMilliseconds))});
    lines.push_back(
        {RelayNames::currentTolerance.get(), withUnit(settings.currentTolerancePercent, lng::Unit::percent)});
    lines.push_back({RelayNames::contacts.get(), contactsText(settings)});
    lines.push_back(
        {RelayNames::debounce.get(), withUnit(settings.debounceMilliseconds, lng::Unit::millisecond)});
    lines.push_back({RelayNames::resetTime.get(), withUnit(settings.resetTime, lng::Unit::second)});
    lines.push_back({get("Settings.withstand"),
                     format(get("Settings.withstandValue"), shortest(settings.continuousWithstand),
                            shortest(settings.tenSecondWithstand), shortest(settings.oneSecondWithstand))});
    return lines;
}

std::vector<Line> describe(const TestPlan& plan, const RelaySettings& settings)
{
    std::vector<Line> lines{{get("PlanView.multiples"), multiplesText(plan.multiples)},
                            {get("Plan.timeout"), withUnit(plan.timeout, lng::Unit::second)},
                            {get("Plan.pause"), withUnit(plan.pause, lng::Unit::second)}};
    lines.insert(lines.begin() + 1, {get("PlanView.faults"), faultsText(plan, settings)});
    if (plan.outputsPerPhase > 1)
        lines.push_back({get("PlanView.outputs"), std::to_string(plan.outputsPerPhase)});
    if (plan.repetitions > 1)
        lines.push_back({get("Plan.repetitions"), std::to_string(plan.repetitions)});
    if (settings.hasRamps()) {
        lines.push_back({get("PlanView.pickUpRamp"), rampText(plan.pickUp)});
        lines.push_back({get("PlanView.dropOffRamp"), rampText(plan.dropOff)});
        lines.push_back(
            {get("Plan.pickUpTolerance"), withUnit(plan.pickUpTolerancePercent, lng::Unit::percent)});
        lines.push_back({get("Plan.minimumRatio"), shortest(plan.minimumRatio)});
    }
    lines.push_back({get("Plan.noOperation"), get(plan.goesOn ? "Plan.goOn" : "Plan.end")});
    return lines;
}

std::string nameOf(StageId stage)
{
    return get("Stage." + std::to_string(static_cast<std::size_t>(stage)));
}

std::string intervalText(double pickUpCurrent, const RampResult& ramp)
{
    const auto [least, most] = std::minmax(ramp.without, ramp.multiple);
    return format(get("Results.interval.text"),
                  KesMeasure::ScreenNumber::amperes(ramp.getValue() * pickUpCurrent),
                  KesMeasure::ScreenNumber::multiple(least), KesMeasure::ScreenNumber::multiple(most));
}

} // namespace Overcurrent::SettingsSummary
