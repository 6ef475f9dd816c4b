#include <VoltageFrequency/model/VoltageFrequencyTest.h>

#include <VoltageFrequency/steps/Steps.h>
#include <VoltageFrequency/text/VoltageFrequencyText.h>

#include <KesCommon/StringHelper.h>
#include <KesCommon/UnitText.h>
#include <KesDriver/simulated/relays/VoltageFrequencyRelay.h>
#include <KesMeasure/ContactChanges.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ScreenNumber.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>

namespace VoltageFrequency {

namespace {

using Kes::StringHelper::format;
using KesMeasure::MeasureState;
using KesMeasure::PlannedMeasurement;
using KesMeasure::Reading;
using KesMeasure::SequenceRecord;
using KesMeasure::ContactChanges::isClosedBefore;
using KesMeasure::ScreenNumber::shortest;
using lng::VoltageFrequency::get;
using Seconds = std::chrono::duration<double>;
using MaybeReading = std::optional<Reading>;

/// What a relay may take between the value and its contact, on a ramp.
constexpr double responseTime = 0.15;
/// In which a rate is sought, in tolerances; from the ramps' reach below to the same above.
constexpr double rateFraction = 0.2;
constexpr int ratePulses = 31;
/// In tolerances: closer to the nominal value a stage cannot be distinguished from one that is off.
constexpr double leastDistance = 1.5;

constexpr const char* ids[] = {"undervoltage", "overvoltage", "underfrequency", "overfrequency",
                               "frequencyRate"};

std::string nameOf(StageKind kind)
{
    return get(std::string("Stage.") + ids[kind]);
}

const char* unitOf(StageKind kind)
{
    return (isVoltage(kind)         ? lng::Unit::volt
            : kind == FrequencyRate ? lng::Unit::hertzPerSecond
                                    : lng::Unit::hertz)
        .get();
}

std::string withUnit(double value, const char* unit)
{
    return shortest(value) + " " + unit;
}

/// The first measured values of a stage; the rest is the measurement's own.
PlannedMeasurement planOf(StageKind kind, const char* quantity)
{
    PlannedMeasurement planned;
    planned.id = std::string(ids[kind]) + "." + quantity;
    planned.object = nameOf(kind);
    planned.quantity = get(std::string("Quantity.") + quantity);
    planned.unit = unitOf(kind);
    planned.decimals = isVoltage(kind) ? 2 : 3;
    return planned;
}

/// A reading of a record whose steps have all begun; others make no sense.
void requireSteps(const SequenceRecord& record, std::size_t step)
{
    if (record.steps.size() <= step)
        throw std::runtime_error(lng::Measure::get("Run.nonsense"));
}

Reading readPickUp(const Settings& settings, const Steps::Ramp& ramp, const SequenceRecord& record)
{
    requireSteps(record, Steps::pickUpStep);
    if (!Steps::hasReset(record, settings))
        return {MeasureState::NotReset, 0.0};
    if (isClosedBefore(record, Steps::pickUpStep, settings.startInput))
        return {MeasureState::ContactEarly, 0.0};
    const auto time = Steps::changeIn(record, Steps::pickUpStep, {settings.startInput, true});
    return time ? Reading{MeasureState::Measured, ramp.valueAt(*time)}
                : Reading{MeasureState::NoOperation, 0.0};
}

Reading readDropOff(const Settings& settings, const Steps::Ramp& ramp, const SequenceRecord& record)
{
    requireSteps(record, Steps::dropOffStep);
    if (!Steps::hasReset(record, settings))
        return {MeasureState::NotReset, 0.0};
    const bool hasStarted =
        Steps::changeIn(record, Steps::operateStep, {settings.startInput, true}).has_value();
    if (!isClosedBefore(record, Steps::dropOffStep, settings.startInput))
        return {hasStarted ? MeasureState::ContactEarly : MeasureState::NoOperation, 0.0};
    const auto time = Steps::changeIn(record, Steps::dropOffStep, {settings.startInput, false});
    return time ? Reading{MeasureState::Measured, ramp.valueAt(*time)}
                : Reading{MeasureState::NoDropOff, 0.0};
}

/// Nothing: no change in the last step.
template <unsigned Settings::*Input>
MaybeReading readChange(const Settings& settings, const SequenceRecord& record)
{
    requireSteps(record, Steps::operateStep);
    if (!Steps::hasReset(record, settings))
        return Reading{MeasureState::NotReset, 0.0};
    const auto time = Steps::changeIn(record, Steps::operateStep, {settings.*Input, true});
    return time ? MaybeReading(Reading{MeasureState::Measured, Seconds(*time).count()}) : std::nullopt;
}

/// Nothing: the stage has not dropped off at this rate.
MaybeReading readRateDropOff(const Settings& settings, const SequenceRecord& record)
{
    requireSteps(record, Steps::rateDropOffStep);
    if (!Steps::hasReset(record, settings))
        return Reading{MeasureState::NotReset, 0.0};
    if (!isClosedBefore(record, Steps::rateDropOffStep, settings.startInput))
        return Reading{MeasureState::NoOperation, 0.0};
    const bool isOpen =
        Steps::changeIn(record, Steps::rateDropOffStep, {settings.startInput, false}).has_value();
    return isOpen ? MaybeReading({MeasureState::Measured, 0.0}) : std::nullopt;
}

} // namespace

std::vector<KesMeasure::TextLine> VoltageFrequencyTest::describe() const
{
    const char* second = lng::Unit::second.get();
    std::vector<KesMeasure::TextLine> lines{
        {get("Settings.nominal"), withUnit(_settings.nominalVoltage, lng::Unit::volt.get()) + ", " +
                                      withUnit(_settings.nominalFrequency, lng::Unit::hertz.get())},
        {get("Settings.inputs"),
         format(get("Settings.inputsValue"), _settings.tripInput, _settings.startInput)}};
    for (std::size_t i = 0; i < StageCount; ++i) {
        const auto kind = static_cast<StageKind>(i);
        const auto& stage = _settings.stages[i];
        if (!stage.isUsed)
            continue;
        lines.push_back({nameOf(kind), ""});
        lines.push_back({get("Settings.setting"),
                         withUnit(stage.setting, unitOf(kind)) + ", " + withUnit(stage.delay, second)});
        lines.push_back({get("Settings.dropOff"), withUnit(stage.dropOff, unitOf(kind))});
        lines.push_back({get("Settings.tolerance"), "\u00B1" + withUnit(stage.tolerance, unitOf(kind)) +
                                                        ", \u00B1" + withUnit(stage.timeTolerance, second)});
    }
    const char* percent = lng::Unit::percent.get();
    lines.insert(lines.end(),
                 {{lng::Measure::get("Caption.plan"), ""},
                  {get("Settings.healthy"), withUnit(_settings.healthyTime, second)},
                  {get("Settings.reset"), withUnit(_settings.resetTime, second)},
                  {get("Settings.ramp"), format(get("Settings.rampValue"), shortest(_settings.rampTime))},
                  {get("Settings.steps"), withUnit(_settings.voltageStep * 100.0, percent) + ", " +
                                              withUnit(_settings.frequencyStep, lng::Unit::hertz.get()) +
                                              ", " + withUnit(_settings.rateStep * 100.0, percent)},
                  {get("Settings.repetitions"), std::to_string(_settings.repetitions)}});
    return lines;
}

Kes::Result VoltageFrequencyTest::check() const
{
    const auto& stages = _settings.stages;
    if (std::none_of(stages.begin(), stages.end(), [](const Stage& stage) { return stage.isUsed; }))
        return Kes::Result::failure(get("Check.noStage"));
    if (_settings.tripInput == _settings.startInput)
        return Kes::Result::failure(get("Check.sameInput"));
    for (std::size_t i = 0; i < FrequencyRate; ++i)
        if (auto result = stages[i].isUsed ? _checkStage(static_cast<StageKind>(i)) : Kes::Result(true);
            !result)
            return result;
    return stages[FrequencyRate].isUsed ? _checkRate() : Kes::Result(true);
}

/// The relay has to be at rest with nominal quantities, as its contacts could not open otherwise.
Kes::Result VoltageFrequencyTest::_checkStage(StageKind kind) const
{
    const auto& stage = _settings.stages[kind];
    const double direction = directionOf(_settings, kind);
    const double nominal = isVoltage(kind) ? _settings.nominalVoltage : _settings.nominalFrequency;
    for (const double value : {stage.setting, stage.dropOff})
        if (direction * (value - nominal) < leastDistance * stage.tolerance)
            return Kes::Result::failure(format(get("Check.tooNear"), nameOf(kind)));
    return true;
}

/// The frequency runs on while the rate is measured; it must not reach a stage on its way.
Kes::Result VoltageFrequencyTest::_checkRate() const
{
    const double direction = directionOf(_settings, FrequencyRate);
    const auto& stage = _settings.stages[FrequencyRate];
    const double highest = std::fabs(stage.setting) + stage.tolerance * rateFraction * (ratePulses / 2);
    const double operateRate = std::fabs(Steps::operateValue(_settings, FrequencyRate));
    const double way = std::max({highest * Steps::ratePulse, (operateRate + highest) * Steps::rateHold,
                                 operateRate * Steps::operateLimit(_settings, FrequencyRate)});
    for (const auto kind : {Underfrequency, Overfrequency}) {
        const auto& other = _settings.stages[kind];
        if (!other.isUsed)
            continue;
        if (other.tolerance / _settings.rampTime > std::fabs(stage.setting) / 2.0)
            return Kes::Result::failure(format(get("Check.rampTooFast"), nameOf(kind)));
        const double room = std::fabs(other.setting - _settings.nominalFrequency) - other.tolerance;
        if (directionOf(_settings, kind) == direction && way > room)
            return Kes::Result::failure(format(get("Check.rateReaches"), shortest(way), nameOf(kind)));
    }
    return true;
}

KesMeasure::MeasurementPlan VoltageFrequencyTest::createPlan() const
{
    KesMeasure::MeasurementPlan plan;
    for (std::size_t i = 0; i < StageCount; ++i) {
        const auto kind = static_cast<StageKind>(i);
        const auto& stage = _settings.stages[i];
        if (!stage.isUsed)
            continue;
        if (kind == FrequencyRate) {
            const double step = directionOf(_settings, kind) * stage.tolerance * rateFraction;
            plan.push_back(_planRates("pickUp", stage.setting, step, &Steps::ratePulseOf,
                                      &readChange<&Settings::startInput>));
            plan.push_back(
                _planRates("dropOff", stage.dropOff, -step, &Steps::rateDropOff, &readRateDropOff));
            plan.back().withoutReading = MeasureState::NoDropOff;
        } else {
            plan.push_back(_planRamp(kind, "pickUp", stage.setting, Steps::pickUpRamp(_settings, kind),
                                     Steps::pickUp(_settings, kind), &readPickUp));
            plan.push_back(_planRamp(kind, "dropOff", stage.dropOff, Steps::dropOffRamp(_settings, kind),
                                     Steps::dropOff(_settings, kind), &readDropOff));
        }
        plan.push_back(_planOperateTime(kind));
    }
    for (auto& planned : plan)
        planned.guard = Steps::guard(_settings);
    return plan;
}

/// On a ramp the contact comes late.
PlannedMeasurement VoltageFrequencyTest::_planRamp(StageKind kind, const char* quantity, double expected,
                                                   const Steps::Ramp& ramp,
                                                   const KesDriver::OutputSequence& sequence,
                                                   ReadRamp readRamp) const
{
    const double tolerance = _settings.stages[kind].tolerance;
    const double late = ramp.rate * responseTime;
    const bool isFalling = ramp.to < ramp.from;
    auto planned = planOf(kind, quantity);
    planned.expected = expected;
    planned.lower = expected - tolerance - (isFalling ? late : 0.0);
    planned.upper = expected + tolerance + (isFalling ? 0.0 : late);
    planned.seconds = _settings.healthyTime + ramp.getSeconds() / 2.0;
    planned.sequences = {sequence};
    planned.read = [settings = _settings, ramp, readRamp](std::size_t, const SequenceRecord& record) {
        return MaybeReading(readRamp(settings, ramp, record));
    };
    return planned;
}

/// A rate is sought in steps, from the ramps' reach before the expected one to the same behind it; what is
/// found lies at most one step behind the relay's own.
PlannedMeasurement VoltageFrequencyTest::_planRates(const char* quantity, double expected, double step,
                                                    RateSequence sequenceOf, ReadRate readRate) const
{
    const double tolerance = _settings.stages[FrequencyRate].tolerance;
    auto planned = planOf(FrequencyRate, quantity);
    planned.expected = expected;
    planned.lower = expected - tolerance + std::min(step, 0.0);
    planned.upper = expected + tolerance + std::max(step, 0.0);
    planned.seconds = (_settings.healthyTime + Steps::ratePulse) * ratePulses / 2.0;
    std::vector<double> rates;
    for (int i = 0; i < ratePulses; ++i)
        rates.push_back(expected + step * (i - ratePulses / 2));
    for (const double rate : rates)
        planned.sequences.push_back(sequenceOf(_settings, rate));
    planned.read = [settings = _settings, rates, readRate](std::size_t sequence,
                                                           const SequenceRecord& record) {
        auto reading = readRate(settings, record);
        if (reading && reading->state == MeasureState::Measured)
            reading->value = rates[sequence];
        return reading;
    };
    return planned;
}

PlannedMeasurement VoltageFrequencyTest::_planOperateTime(StageKind kind) const
{
    const auto& stage = _settings.stages[kind];
    auto planned = planOf(kind, "operateTime");
    planned.unit = lng::Unit::second.get();
    planned.decimals = 3;
    planned.expected = stage.delay;
    planned.lower = std::max(0.0, stage.delay - stage.timeTolerance);
    planned.upper = stage.delay + stage.timeTolerance;
    planned.seconds = _settings.healthyTime + stage.delay;
    planned.sequences = {Steps::operateTime(_settings, kind)};
    planned.read = [settings = _settings](std::size_t, const SequenceRecord& record) {
        return readChange<&Settings::tripInput>(settings, record);
    };
    return planned;
}

std::shared_ptr<KesDriver::ISimulatedTestObject> VoltageFrequencyTest::makeTestObject() const
{
    KesDriver::VoltageFrequencyRelay::Settings relay;
    relay.nominalVoltage = _settings.nominalVoltage;
    relay.tripInput = _settings.tripInput;
    relay.startInput = _settings.startInput;
    for (std::size_t i = 0; i < StageCount; ++i) {
        const auto kind = static_cast<StageKind>(i);
        const auto& stage = _settings.stages[i];
        const bool isFrequency = kind == Underfrequency || kind == Overfrequency;
        const double dropOff =
            isFrequency ? std::fabs(stage.dropOff - stage.setting) : stage.dropOff / stage.setting;
        relay.stages[i] = {stage.isUsed, stage.setting, stage.delay, dropOff};
    }
    return std::make_shared<KesDriver::VoltageFrequencyRelay>(relay);
}

} // namespace VoltageFrequency
