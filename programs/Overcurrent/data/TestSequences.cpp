#include <Overcurrent/data/TestSequences.h>

#include <Overcurrent/data/StageTimes.h>
#include <Overcurrent/data/TimeBand.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>

namespace Overcurrent::TestSequences {

namespace {

using KesDriver::DeviceTime;
using KesDriver::toDeviceTime;
using KesDriver::EndCondition;
using KesDriver::OutputSequence;
using KesDriver::OutputStep;

/// How long a relay may take to close its start contact at the upper end of the drop-off ramp, in seconds.
constexpr double startTime = 1.0;
/// Between the end of a relay's time and that of a step, in seconds: contacts take theirs.
constexpr double contactTime = 0.1;
/// What a point waits longer than a healthy relay takes, as a share of that.
constexpr double pointMargin = 0.2;
/// Fine steps in a coarse one.
constexpr double coarseness = 5.0;

DeviceTime debounceOf(const RelaySettings& settings)
{
    return toDeviceTime(settings.debounceMilliseconds / 1000.0);
}

OutputStep stepUntil(const RelaySettings& settings, const KesDriver::OutputState& outputs, double seconds,
                     unsigned input, bool isClosed)
{
    OutputStep step;
    step.outputs = outputs;
    step.duration = toDeviceTime(seconds);
    step.endOn = EndCondition({{input, isClosed}}, EndCondition::Join::Any, debounceOf(settings));
    return step;
}

/// Into (-180, 180].
double normalized(double degrees)
{
    const double rest = std::remainder(degrees, 360.0);
    return rest == -180.0 ? 180.0 : rest;
}

using Currents = std::array<KesDriver::Phasor, 3>;

/// Each output to the phase of its own.
Currents perPhase(Fault fault, double amperes, double degrees)
{
    Currents currents = Faults::currents(fault);
    for (auto& current : currents)
        if (current.magnitude > 0.0)
            current = {current.magnitude * amperes, normalized(current.degrees + degrees)};
    return currents;
}

/// Several outputs to one input.
Currents inParallel(Fault fault, double amperes, double degrees, unsigned count)
{
    double loop = 0.0;
    for (const auto& current : Faults::currents(fault))
        if (current.magnitude > 0.0)
            loop = current.degrees;
    Currents currents{};
    for (unsigned i = 0; i < count; ++i)
        currents[i] = {amperes / count, normalized(loop + degrees)};
    return currents;
}

/// A step of a ramp.
OutputStep rampStep(const RelaySettings& settings, const TestPlan& plan, double multiple, double seconds,
                    bool isClosed)
{
    const auto faultCase = plan.getRampCase();
    const double amperes = multiple * StageTimes::pickUpCurrent(settings, faultCase);
    return stepUntil(settings, outputs(settings, plan, faultCase.fault, amperes), seconds,
                     settings.getRampInput(), isClosed);
}

/// The latest trip of the stage that picks up first, at a multiple of its Is: no shorter than a healthy relay
/// takes.
double longestTrip(const RelaySettings& settings, const TestPlan& plan, double multiple)
{
    const auto faultCase = plan.getRampCase();
    const double share =
        StageTimes::pickUpCurrent(settings, faultCase) / StageTimes::referenceCurrent(settings, faultCase);
    return pointLimit(settings, plan, {faultCase.fault, multiple * share});
}

/// How long the contact may take to close on a ramp: the trip contact waits for the stage's time.
double closingTime(const RelaySettings& settings, const TestPlan& plan, double multiple, double ofStart)
{
    return settings.rampContact == RampContactKind::ByTripContact
               ? std::max(ofStart, longestTrip(settings, plan, multiple))
               : ofStart;
}

void addSteps(OutputSequence& sequence, const RelaySettings& settings, const TestPlan& plan,
              const std::vector<double>& multiples, double seconds, bool isClosed)
{
    for (const double multiple : multiples)
        sequence.push_back(rampStep(settings, plan, multiple, seconds, isClosed));
}

} // namespace

KesMeasure::StepGuard guard(const RelaySettings& settings, const TestPlan& plan)
{
    KesMeasure::StepGuard guard;
    // A contact may be open long before a disk is back: the whole reset time passes.
    guard.restTime = toDeviceTime(std::max(plan.pause, settings.resetTime));
    guard.resetTime = toDeviceTime(settings.resetTime);
    guard.debounce = debounceOf(settings);
    guard.contacts = {settings.tripInput};
    if (settings.rampContact == RampContactKind::ByStartContact)
        guard.contacts.push_back(settings.startInput);
    return guard;
}

double pointLimit(const RelaySettings& settings, const TestPlan& plan, const PlannedPoint& point)
{
    const auto band = TimeBand::at(settings, plan.caseOf(point.fault), point.multiple);
    if (!band || !band->latest)
        return plan.timeout;
    const double margin =
        std::max(*band->latest * pointMargin, contactTime) + settings.debounceMilliseconds / 1000.0;
    return std::min(*band->latest + margin, plan.timeout);
}

KesDriver::OutputState outputs(const RelaySettings& settings, const TestPlan& plan, Fault fault,
                               double amperes)
{
    KesDriver::OutputState state;
    double degrees = 0.0;
    if (settings.isDirectional()) {
        degrees = settings.characteristicAngle + (plan.direction == FaultDirection::Forward ? 0.0 : 180.0);
        state.voltages = Faults::voltages(fault);
        for (auto& voltage : state.voltages)
            voltage.magnitude *= settings.nominalVoltage / std::numbers::sqrt3;
    }
    state.currents = plan.outputsPerPhase > 1 ? inParallel(fault, amperes, degrees, plan.outputsPerPhase)
                                              : perPhase(fault, amperes, degrees);
    return state;
}

OutputSequence point(const RelaySettings& settings, const TestPlan& plan, const PlannedPoint& point)
{
    const double amperes = point.multiple * StageTimes::referenceCurrent(settings, plan.caseOf(point.fault));
    return {stepUntil(settings, outputs(settings, plan, point.fault, amperes),
                      pointLimit(settings, plan, point), settings.tripInput, true)};
}

std::vector<double> coarse(const Ramp& ramp)
{
    return Ramp{ramp.from, ramp.to, ramp.step * coarseness, ramp.dwell}.getMultiples();
}

std::vector<double> fine(const Ramp& ramp, double without, double with)
{
    const double step = with < without ? -ramp.step : ramp.step;
    const auto [least, most] = std::minmax(ramp.from, ramp.to);
    return Ramp{std::clamp(without - step, least, most), std::clamp(with + step, least, most), ramp.step,
                ramp.dwell}
        .getMultiples();
}

OutputSequence pickUp(const RelaySettings& settings, const TestPlan& plan,
                      const std::vector<double>& multiples)
{
    OutputSequence sequence;
    addSteps(sequence, settings, plan, multiples,
             closingTime(settings, plan, plan.pickUp.to, plan.pickUp.dwell), true);
    return sequence;
}

OutputSequence dropOff(const RelaySettings& settings, const TestPlan& plan,
                       const std::vector<double>& multiples)
{
    const double from = plan.dropOff.from;
    OutputSequence sequence{
        rampStep(settings, plan, from, closingTime(settings, plan, from, startTime), true)};
    // A contact that opens late would be seen to open at a step further down.
    addSteps(sequence, settings, plan, multiples,
             std::max(plan.dropOff.dwell, settings.resetTime + contactTime), false);
    return sequence;
}

} // namespace Overcurrent::TestSequences
