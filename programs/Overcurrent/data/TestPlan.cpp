#include <Overcurrent/data/TestPlan.h>

#include <Overcurrent/data/TestSequences.h>
#include <Overcurrent/data/TimeBand.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/HeatBudget.h>
#include <KesMeasure/ScreenNumber.h>

#include <algorithm>
#include <cmath>

namespace Overcurrent {

namespace {

using Kes::Result;
using Kes::StringHelper::format;
using KesMeasure::ScreenNumber::shortest;

/// A hair, in percent.
constexpr double rounding = 1e-9;

template <typename... Args>
Result refuse(const char* key, const Args&... args)
{
    return Result::failure(format(lng::Overcurrent::get(key), args...));
}

/// Written so that what is not a number is outside.
bool isWithin(double value, double minimum, double maximum)
{
    return value >= minimum && value <= maximum;
}

Result checkRange(const char* nameKey, double value, double minimum, double maximum)
{
    if (isWithin(value, minimum, maximum))
        return true;
    const std::string name = lng::Overcurrent::get(nameKey);
    return refuse("Plan.range", name, shortest(value), shortest(minimum), shortest(maximum));
}

Result checkMultiples(const std::vector<double>& multiples)
{
    if (multiples.empty())
        return refuse("Plan.noPoints");
    if (multiples.size() > TestPlan::maximumPoints)
        return refuse("Plan.tooManyPoints", multiples.size(), TestPlan::maximumPoints);
    for (const double multiple : multiples) {
        if (!(multiple > 1.0))
            return refuse("Plan.belowSetting", shortest(multiple));
        if (!isWithin(multiple, 1.0, TestPlan::maximumMultiple))
            return refuse("Plan.aboveMaximum", shortest(multiple), shortest(TestPlan::maximumMultiple));
    }
    return true;
}

Result checkRamp(const char* nameKey, const Ramp& ramp, bool isRising, double tolerancePercent)
{
    const std::string name = lng::Overcurrent::get(nameKey);
    if (!isWithin(ramp.from, 0.0, TestPlan::maximumMultiple) ||
        !isWithin(ramp.to, 0.0, TestPlan::maximumMultiple))
        return refuse("Plan.rampRange", name, shortest(TestPlan::maximumMultiple));
    if (isRising ? !(ramp.from < 1.0 && ramp.to > 1.0) : !(ramp.from > 1.0 && ramp.to < 1.0))
        return refuse(isRising ? "Plan.rampUp" : "Plan.rampDown", name, shortest(ramp.from),
                      shortest(ramp.to));
    if (!(ramp.step > 0.0))
        return refuse("Plan.rampStep", name, shortest(ramp.step));
    // A step as wide as the tolerance will do.
    if (ramp.step * 100.0 > tolerancePercent + rounding)
        return refuse("Plan.rampCoarse", name, shortest(ramp.step), shortest(tolerancePercent));
    if (!(ramp.countSteps() <= static_cast<double>(TestPlan::maximumRampSteps)))
        return refuse("Plan.rampTooLong", name, TestPlan::maximumRampSteps);
    if (!isWithin(ramp.dwell, 0.02, 10.0))
        return refuse("Plan.rampDwell", name, shortest(ramp.dwell), shortest(0.02), shortest(10.0));
    return true;
}

double largestMultiple(const RelaySettings& settings, const TestPlan& plan)
{
    const double point = *std::max_element(plan.multiples.begin(), plan.multiples.end());
    return settings.hasRamps() ? std::max({point, plan.pickUp.to, plan.dropOff.from}) : point;
}

/// Walks through the test as it goes in the worst case, each step for its whole time, and with the rests that
/// the run would put before.
class HeatWalk {
public:
    HeatWalk(const RelaySettings& settings, const TestPlan& plan)
        : _pause(plan.pause), _budget(settings.getWithstand())
    {}

    /// False when the sequence would be too much here.
    bool pass(const KesDriver::OutputSequence& sequence)
    {
        const auto rest = _budget.getRestBefore(sequence);
        if (!rest || *rest > KesMeasure::StepRunner::longestCooling)
            return false;
        _budget.add(0.0, std::max(_pause, *rest));
        _budget.add(sequence);
        return true;
    }

private:
    const double _pause;
    KesMeasure::HeatBudget _budget;
};

Result checkHeat(const RelaySettings& settings, const TestPlan& plan)
{
    using namespace TestSequences;
    HeatWalk walk(settings, plan);
    for (const double multiple : plan.multiples)
        if (!walk.pass(point(settings, plan, multiple)))
            return refuse("Plan.tooHotPoint", shortest(multiple),
                          shortest(pointLimit(settings, plan, multiple)));
    if (!settings.hasRamps())
        return true;
    if (!walk.pass(pickUp(settings, plan, coarse(plan.pickUp))))
        return refuse("Plan.tooHotRamp", std::string(lng::Overcurrent::get("PlanView.pickUpRamp")));
    if (!walk.pass(dropOff(settings, plan, coarse(plan.dropOff))))
        return refuse("Plan.tooHotRamp", std::string(lng::Overcurrent::get("PlanView.dropOffRamp")));
    return true;
}

} // namespace

double Ramp::countSteps() const
{
    // A share of a step more than a whole number comes from rounding, not from the user.
    return std::ceil(std::fabs(to - from) / step - 1e-6) + 1.0;
}

std::vector<double> Ramp::getMultiples() const
{
    const auto count = static_cast<std::size_t>(countSteps());
    const double direction = to < from ? -step : step;
    std::vector<double> multiples;
    for (std::size_t i = 0; i + 1 < count; ++i)
        multiples.push_back(from + direction * static_cast<double>(i));
    multiples.push_back(to);
    return multiples;
}

Result TestPlan::check() const
{
    if (auto result = checkMultiples(multiples); !result)
        return result;
    if (auto result = checkRange("Plan.timeout", timeout, 0.1, 3600.0); !result)
        return result;
    if (auto result = checkRange("Plan.pause", pause, 0.05, 600.0); !result)
        return result;
    if (auto result = checkRange("Plan.pickUpTolerance", pickUpTolerancePercent, 0.1, 100.0); !result)
        return result;
    for (const double multiple : multiples)
        if ((multiple - 1.0) * 100.0 <= pickUpTolerancePercent + rounding)
            return refuse("Plan.pointTooLow", shortest(multiple), shortest(pickUpTolerancePercent));
    if (auto result = checkRamp("Plan.pickUp", pickUp, true, pickUpTolerancePercent); !result)
        return result;
    if (auto result = checkRamp("Plan.dropOff", dropOff, false, pickUpTolerancePercent); !result)
        return result;
    if (auto result = checkRange("Plan.repetitions", repetitions, 1.0, maximumRepetitions); !result)
        return result;
    // A relay that drops off at its pick-up value passes no test.
    return checkRange("Plan.minimumRatio", minimumRatio, 0.01, 0.99);
}

Result TestPlan::checkTimes(const RelaySettings& settings) const
{
    if (auto result = check(); !result)
        return result;
    for (const double multiple : multiples) {
        const auto band = TimeBand::at(settings, multiple);
        if (!band)
            return refuse("Plan.belowSetting", shortest(multiple));
        if (!band->latest)
            return refuse("Plan.withinCurrentTolerance", shortest(multiple),
                          shortest(settings.currentTolerancePercent));
        if (*band->latest > timeout)
            return refuse("Plan.timeoutTooShort", shortest(timeout), shortest(multiple),
                          KesMeasure::ScreenNumber::fixed(*band->latest, 2));
    }
    return true;
}

Result TestPlan::check(const RelaySettings& settings) const
{
    if (auto result = checkTimes(settings); !result)
        return result;
    if (settings.rampContact == RampContactKind::ByTripContact) {
        if (settings.curve != CurveKind::DefiniteTimeCurve)
            return refuse("Plan.rampByTrip");
        if (!TimeBand::at(settings, dropOff.from)->latest)
            return refuse("Plan.withinCurrentTolerance", shortest(dropOff.from),
                          shortest(settings.currentTolerancePercent));
    }
    return checkHeat(settings, *this);
}

Result TestPlan::check(const RelaySettings& settings, const KesDriver::OutputLimits& limits) const
{
    if (auto result = check(settings); !result)
        return result;
    for (const unsigned input : {settings.tripInput, settings.getRampInput()})
        if (input > limits.binaryInputs)
            return refuse("Plan.noSuchInput", input, limits.binaryInputs);
    const double largest = largestMultiple(settings, *this);
    if (largest * settings.settingCurrent <= limits.maximumAmperes)
        return true;
    return refuse("Plan.aboveOutput", shortest(largest), shortest(largest * settings.settingCurrent),
                  shortest(limits.maximumAmperes));
}

} // namespace Overcurrent
