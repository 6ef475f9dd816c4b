#include <VoltageFrequency/steps/Steps.h>

#include <KesMeasure/ContactChanges.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <vector>

namespace VoltageFrequency::Steps {

namespace {

using namespace std::chrono_literals;
using KesDriver::DeviceTime;
using KesDriver::toDeviceTime;
using KesDriver::EndCondition;
using KesDriver::InputCondition;
using KesDriver::OutputRamp;
using KesDriver::OutputSequence;
using KesDriver::OutputStep;
using KesMeasure::SequenceRecord;
namespace ContactChanges = KesMeasure::ContactChanges;
using Seconds = std::chrono::duration<double>;

/// Contacts bounce.
constexpr DeviceTime debounce = 5ms;
/// Nominal quantities stand at least that long before the contacts are looked at.
constexpr DeviceTime lookTime = 100ms;
/// Beside the expected value, in tolerances.
constexpr double rampReach = 3.0;
/// A value stands for so long before the ramp that begins with it.
constexpr double settleTime = 0.5;
/// In which a stage starts far beyond its setting.
constexpr double startTime = 2.0;
/// Beyond the latest time that passes. A frequency must not run far.
constexpr double operateMargin = 1.0;
constexpr double rateMargin = 0.2;

OutputStep stepOf(double volts, double hertz, double seconds)
{
    OutputStep step;
    const double phaseVolts = volts / std::numbers::sqrt3;
    step.outputs.voltages = {{{phaseVolts, 0.0}, {phaseVolts, -120.0}, {phaseVolts, 120.0}}};
    step.outputs.voltageHertz = hertz;
    step.duration = toDeviceTime(seconds);
    return step;
}

/// Everything nominal but the stage's own quantity.
OutputStep stepOf(const Settings& settings, StageKind kind, double value, double seconds)
{
    return isVoltage(kind) ? stepOf(value, settings.nominalFrequency, seconds)
                           : stepOf(settings.nominalVoltage, value, seconds);
}

OutputStep healthyStep(const Settings& settings, double seconds)
{
    return stepOf(settings.nominalVoltage, settings.nominalFrequency, seconds);
}

OutputStep rampStep(const Settings& settings, StageKind kind, const Ramp& ramp)
{
    auto step = stepOf(settings, kind, ramp.from, ramp.getSeconds());
    const double rate = ramp.to < ramp.from ? -ramp.rate : ramp.rate;
    if (isVoltage(kind))
        for (auto& phase : step.ramp.voltages)
            phase.magnitude = rate / std::numbers::sqrt3;
    else
        step.ramp.voltageHertz = rate;
    return step;
}

/// Ends the step at the contact's change within it.
OutputStep until(OutputStep step, unsigned input, bool isClosed)
{
    step.endOn = EndCondition({InputCondition{input, isClosed, true}}, EndCondition::Join::Any, debounce);
    return step;
}

/// The steps before each measurement.
OutputSequence begin(const Settings& settings)
{
    auto reset = healthyStep(settings, settings.resetTime);
    reset.endOn =
        EndCondition({InputCondition{settings.tripInput, false}, InputCondition{settings.startInput, false}},
                     EndCondition::Join::All, debounce);
    return {healthyStep(settings, settings.healthyTime), reset};
}

double nominalOf(const Settings& settings, StageKind kind)
{
    return isVoltage(kind) ? settings.nominalVoltage : settings.nominalFrequency;
}

/// Beyond the setting by the ramp's reach.
double startValue(const Settings& settings, StageKind kind)
{
    const auto& stage = settings.stages[kind];
    return std::max(0.0, stage.setting + directionOf(settings, kind) * rampReach * stage.tolerance);
}

/// From the nominal side, or to it, at most as far as the nominal value.
double nominalSide(const Settings& settings, StageKind kind, double value)
{
    const double direction = directionOf(settings, kind);
    const double reached = value - direction * rampReach * settings.stages[kind].tolerance;
    const double nominal = nominalOf(settings, kind);
    return direction < 0.0 ? std::min(reached, nominal) : std::max(reached, nominal);
}

OutputStep rateStep(const Settings& settings, double hertzPerSecond, double seconds)
{
    auto step = healthyStep(settings, seconds);
    step.ramp.voltageHertz = hertzPerSecond;
    return step;
}

} // namespace

double Ramp::valueAt(DeviceTime time) const
{
    return from + (to < from ? -rate : rate) * Seconds(time).count();
}

Ramp pickUpRamp(const Settings& settings, StageKind kind)
{
    const auto& stage = settings.stages[kind];
    return {nominalSide(settings, kind, stage.setting), startValue(settings, kind),
            stage.tolerance / settings.rampTime};
}

Ramp dropOffRamp(const Settings& settings, StageKind kind)
{
    const auto& stage = settings.stages[kind];
    const double direction = directionOf(settings, kind);
    const double deepest = startValue(settings, kind);
    const double from = stage.dropOff + direction * rampReach * stage.tolerance;
    return {direction < 0.0 ? std::max(from, deepest) : std::min(from, deepest),
            nominalSide(settings, kind, stage.dropOff), stage.tolerance / settings.rampTime};
}

double operateValue(const Settings& settings, StageKind kind)
{
    const double setting = settings.stages[kind].setting;
    if (kind == FrequencyRate)
        return setting * (1.0 + settings.rateStep);
    const double direction = directionOf(settings, kind);
    return isVoltage(kind) ? setting * (1.0 + direction * settings.voltageStep)
                           : setting + direction * settings.frequencyStep;
}

double operateLimit(const Settings& settings, StageKind kind)
{
    const auto& stage = settings.stages[kind];
    return stage.delay + stage.timeTolerance + (kind == FrequencyRate ? rateMargin : operateMargin);
}

KesMeasure::StepGuard guard(const Settings& settings)
{
    return {.rest = healthyStep(settings, 0.0).outputs,
            .restTime = lookTime,
            .contacts = {settings.tripInput, settings.startInput},
            .resetTime = toDeviceTime(settings.resetTime),
            .debounce = debounce};
}

OutputSequence pickUp(const Settings& settings, StageKind kind)
{
    const auto ramp = pickUpRamp(settings, kind);
    auto sequence = begin(settings);
    sequence.push_back(stepOf(settings, kind, ramp.from, settleTime));
    sequence.push_back(until(rampStep(settings, kind, ramp), settings.startInput, true));
    return sequence;
}

OutputSequence dropOff(const Settings& settings, StageKind kind)
{
    const auto ramp = dropOffRamp(settings, kind);
    auto sequence = begin(settings);
    sequence.push_back(
        until(stepOf(settings, kind, startValue(settings, kind), startTime), settings.startInput, true));
    sequence.push_back(stepOf(settings, kind, ramp.from, settleTime));
    sequence.push_back(until(rampStep(settings, kind, ramp), settings.startInput, false));
    return sequence;
}

OutputSequence operateTime(const Settings& settings, StageKind kind)
{
    const double value = operateValue(settings, kind);
    const double limit = operateLimit(settings, kind);
    auto sequence = begin(settings);
    sequence.push_back(
        until(kind == FrequencyRate ? rateStep(settings, value, limit) : stepOf(settings, kind, value, limit),
              settings.tripInput, true));
    return sequence;
}

OutputSequence ratePulseOf(const Settings& settings, double hertzPerSecond)
{
    auto sequence = begin(settings);
    sequence.push_back(until(rateStep(settings, hertzPerSecond, ratePulse), settings.startInput, true));
    return sequence;
}

OutputSequence rateDropOff(const Settings& settings, double hertzPerSecond)
{
    const double startRate = operateValue(settings, FrequencyRate);
    auto next = rateStep(settings, hertzPerSecond, rateHold);
    next.outputs.voltageHertz += startRate * rateHold;
    auto sequence = begin(settings);
    sequence.push_back(rateStep(settings, startRate, rateHold));
    sequence.push_back(until(std::move(next), settings.startInput, false));
    return sequence;
}

std::optional<DeviceTime> changeIn(const SequenceRecord& record, std::size_t step, InputCondition condition)
{
    const auto change = ContactChanges::findFirst(record, condition, debounce, step);
    return change ? std::optional(change->time - record.steps[step]) : std::nullopt;
}

bool hasReset(const SequenceRecord& record, const Settings& settings)
{
    return record.steps[2] - record.steps[1] < toDeviceTime(settings.resetTime) &&
           !ContactChanges::isClosedBefore(record, 2, settings.tripInput) &&
           !ContactChanges::isClosedBefore(record, 2, settings.startInput);
}

} // namespace VoltageFrequency::Steps
