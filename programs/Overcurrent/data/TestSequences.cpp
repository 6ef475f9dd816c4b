#include <Overcurrent/data/TestSequences.h>

#include <Overcurrent/data/TimeBand.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace Overcurrent::TestSequences {

namespace {

using KesDriver::DeviceTime;
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

DeviceTime toDeviceTime(double seconds)
{
    return DeviceTime(std::llround(seconds * 1e6));
}

DeviceTime debounceOf(const RelaySettings& settings)
{
    return toDeviceTime(settings.debounceMilliseconds / 1000.0);
}

OutputStep stepUntil(const RelaySettings& settings, double multiple, double seconds, unsigned input,
                     bool isClosed)
{
    OutputStep step;
    step.outputs.currents[0].magnitude = multiple * settings.settingCurrent;
    step.duration = toDeviceTime(seconds);
    step.endOn = EndCondition({{input, isClosed}}, EndCondition::Join::Any, debounceOf(settings));
    return step;
}

/// How long the contact may take to close on a ramp: the trip contact waits for the stage's time.
double closingTime(const RelaySettings& settings, const TestPlan& plan, double multiple, double ofStart)
{
    return settings.rampContact == RampContactKind::ByTripContact
               ? std::max(ofStart, pointLimit(settings, plan, multiple))
               : ofStart;
}

void addSteps(OutputSequence& sequence, const RelaySettings& settings, const std::vector<double>& multiples,
              double seconds, bool isClosed)
{
    for (const double multiple : multiples)
        sequence.push_back(stepUntil(settings, multiple, seconds, settings.getRampInput(), isClosed));
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

double pointLimit(const RelaySettings& settings, const TestPlan& plan, double multiple)
{
    const auto band = TimeBand::at(settings, multiple);
    if (!band || !band->latest)
        return plan.timeout;
    const double margin =
        std::max(*band->latest * pointMargin, contactTime) + settings.debounceMilliseconds / 1000.0;
    return std::min(*band->latest + margin, plan.timeout);
}

OutputSequence point(const RelaySettings& settings, const TestPlan& plan, double multiple)
{
    return {stepUntil(settings, multiple, pointLimit(settings, plan, multiple), settings.tripInput, true)};
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
    addSteps(sequence, settings, multiples, closingTime(settings, plan, plan.pickUp.to, plan.pickUp.dwell),
             true);
    return sequence;
}

OutputSequence dropOff(const RelaySettings& settings, const TestPlan& plan,
                       const std::vector<double>& multiples)
{
    const double from = plan.dropOff.from;
    OutputSequence sequence{stepUntil(settings, from, closingTime(settings, plan, from, startTime),
                                      settings.getRampInput(), true)};
    // A contact that opens late would be seen to open at a step further down.
    addSteps(sequence, settings, multiples, std::max(plan.dropOff.dwell, settings.resetTime + contactTime),
             false);
    return sequence;
}

} // namespace Overcurrent::TestSequences
