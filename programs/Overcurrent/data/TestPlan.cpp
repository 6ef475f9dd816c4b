#include <Overcurrent/data/TestPlan.h>

#include <Overcurrent/data/StageTimes.h>
#include <Overcurrent/data/TestSequences.h>
#include <Overcurrent/data/TimeBand.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/HeatBudget.h>
#include <KesMeasure/ScreenNumber.h>

#include <algorithm>
#include <cmath>
#include <functional>

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

Result checkFaults(const TestPlan& plan)
{
    if (plan.faults.empty())
        return refuse("Plan.noFaults");
    if (std::adjacent_find(plan.faults.begin(), plan.faults.end(), std::greater_equal<>()) !=
        plan.faults.end())
        return refuse("Plan.faultTwice");
    if (plan.outputsPerPhase < 1 || plan.outputsPerPhase > TestPlan::outputCount)
        return refuse("Plan.outputs", plan.outputsPerPhase, TestPlan::outputCount);
    if (plan.outputsPerPhase == 1)
        return true;
    for (const auto fault : plan.faults) {
        // The residual input is one as well.
        const unsigned inputs = fault == Fault::N ? 1 : Faults::countPhases(fault);
        if (inputs * plan.outputsPerPhase > TestPlan::outputCount)
            return refuse("Plan.tooFewOutputs", Faults::nameOf(fault), inputs * plan.outputsPerPhase,
                          plan.outputsPerPhase, TestPlan::outputCount);
    }
    if (plan.faults.size() > 1)
        return refuse("Plan.oneInput", Faults::nameOf(plan.faults[0]), Faults::nameOf(plan.faults[1]));
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

/// Of the fault's points, or of the ramps: what the current of a fault may reach.
struct Largest {
    double multiple;
    double amperes;
};

Largest largestOf(const RelaySettings& settings, const TestPlan& plan, Fault fault)
{
    const auto faultCase = plan.caseOf(fault);
    const double point = *std::max_element(plan.multiples.begin(), plan.multiples.end());
    Largest largest{point, point * StageTimes::referenceCurrent(settings, faultCase)};
    const double ramp = std::max(plan.pickUp.to, plan.dropOff.from);
    const double amperes = ramp * StageTimes::pickUpCurrent(settings, faultCase);
    if (settings.hasRamps() && faultCase == plan.getRampCase() && amperes > largest.amperes)
        largest = {ramp, amperes};
    return largest;
}

/// That a stage which the test is about sees each fault.
Result checkStages(const RelaySettings& settings, const TestPlan& plan)
{
    for (const auto fault : plan.faults)
        if (!StageTimes::reference(settings, plan.caseOf(fault)))
            return refuse("Plan.noStage", Faults::nameOf(fault));
    return true;
}

Result checkTimes(const RelaySettings& settings, const TestPlan& plan, const PlannedPoint& point)
{
    const auto band = TimeBand::at(settings, plan.caseOf(point.fault), point.multiple);
    // Below the first pair of a table.
    if (!band)
        return refuse("Plan.noStageAt", shortest(point.multiple), Faults::nameOf(point.fault));
    if (!band->latest)
        return refuse("Plan.withinCurrentTolerance", shortest(point.multiple),
                      shortest(settings.currentTolerancePercent));
    if (*band->latest > plan.timeout)
        return refuse("Plan.timeoutTooShort", shortest(plan.timeout), shortest(point.multiple),
                      KesMeasure::ScreenNumber::fixed(*band->latest, 2));
    return true;
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
    for (const auto& planned : plan.getPoints())
        if (!walk.pass(point(settings, plan, planned)))
            return refuse("Plan.tooHotPoint", shortest(planned.multiple),
                          shortest(pointLimit(settings, plan, planned)));
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

std::vector<PlannedPoint> TestPlan::getPoints() const
{
    std::vector<PlannedPoint> points;
    for (const auto fault : faults)
        for (const double multiple : multiples)
            points.push_back({fault, multiple});
    return points;
}

double TestPlan::getOutputShare(Fault fault) const
{
    return outputsPerPhase > 1 ? 1.0 / outputsPerPhase : Faults::phaseShare(fault);
}

Result TestPlan::check() const
{
    if (auto result = checkMultiples(multiples); !result)
        return result;
    if (auto result = checkFaults(*this); !result)
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
    if (auto result = checkStages(settings, *this); !result)
        return result;
    for (const auto& point : getPoints())
        if (auto result = Overcurrent::checkTimes(settings, *this, point); !result)
            return result;
    return true;
}

Result TestPlan::check(const RelaySettings& settings) const
{
    if (auto result = checkTimes(settings); !result)
        return result;
    if (settings.rampContact == RampContactKind::ByTripContact) {
        if (settings[*StageTimes::firstToPickUp(settings, getRampCase())].curve !=
            CurveKind::DefiniteTimeCurve)
            return refuse("Plan.rampByTrip");
        if (dropOff.from * (1.0 - settings.currentTolerancePercent / 100.0) <= 1.0)
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
    for (const auto fault : faults) {
        const auto largest = largestOf(settings, *this, fault);
        const double most = limits.maximumAmperes / getOutputShare(fault);
        if (!(largest.amperes <= most))
            return refuse("Plan.aboveOutput", shortest(largest.multiple), shortest(largest.amperes),
                          shortest(most));
    }
    return true;
}

} // namespace Overcurrent
