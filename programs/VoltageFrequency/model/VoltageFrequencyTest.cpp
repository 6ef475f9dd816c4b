#include <VoltageFrequency/model/VoltageFrequencyTest.h>

#include <VoltageFrequency/steps/Steps.h>
#include <VoltageFrequency/text/VoltageFrequencyText.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/simulated/relays/VoltageFrequencyRelay.h>
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
using KesMeasure::ScreenNumber::shortest;
using lng::VoltageFrequency::get;
using Seconds = std::chrono::duration<double>;
using MaybeReading = std::optional<Reading>;

/// What a relay may take between the value and its contact, on a ramp.
constexpr double responseTime = 0.15;
/// In which a rate is sought, in tolerances; from the ramps' reach below to the same above.
constexpr double rateFraction = 0.2;
constexpr int ratePulses = 31;
/// In tolerances: closer to the nominal value a stage cannot be told from one that is off.
constexpr double leastDistance = 1.5;

constexpr const char* ids[] = {"undervoltage", "overvoltage", "underfrequency", "overfrequency",
                               "frequencyRate"};

std::string nameOf(StageKind kind)
{
    return get(std::string("Stage.") + ids[kind]);
}

const char* unitOf(StageKind kind)
{
    return get(isVoltage(kind) ? "Unit.volt" : kind == FrequencyRate ? "Unit.hertzPerSecond" : "Unit.hertz");
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
    if (Steps::isClosedBefore(record, Steps::pickUpStep, settings.startInput))
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
    if (!Steps::isClosedBefore(record, Steps::dropOffStep, settings.startInput)) {
        const bool hasStarted =
            Steps::changeIn(record, Steps::operateStep, {settings.startInput, true}).has_value();
        return {hasStarted ? MeasureState::ContactEarly : MeasureState::NoOperation, 0.0};
    }
    const auto time = Steps::changeIn(record, Steps::dropOffStep, {settings.startInput, false});
    return time ? Reading{MeasureState::Measured, ramp.valueAt(*time)}
                : Reading{MeasureState::NoOperation, 0.0};
}

/// Nothing: no change in the last step.
MaybeReading readChange(const Settings& settings, unsigned input, const SequenceRecord& record)
{
    requireSteps(record, Steps::operateStep);
    if (!Steps::hasReset(record, settings))
        return Reading{MeasureState::NotReset, 0.0};
    const auto time = Steps::changeIn(record, Steps::operateStep, {input, true});
    return time ? MaybeReading(Reading{MeasureState::Measured, Seconds(*time).count()}) : std::nullopt;
}

} // namespace

std::vector<KesMeasure::TextLine> VoltageFrequencyTest::describe() const
{
    const char* second = get("Unit.second");
    std::vector<KesMeasure::TextLine> lines{
        {get("Settings.nominal"), withUnit(_settings.nominalVoltage, get("Unit.volt")) + ", " +
                                      withUnit(_settings.nominalFrequency, get("Unit.hertz"))},
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
        if (kind != FrequencyRate)
            lines.push_back({get("Settings.dropOff"), withUnit(stage.dropOff, unitOf(kind))});
        lines.push_back({get("Settings.tolerance"), "\u00B1" + withUnit(stage.tolerance, unitOf(kind)) +
                                                        ", \u00B1" + withUnit(stage.timeTolerance, second)});
    }
    const char* percent = get("Unit.percent");
    lines.insert(lines.end(),
                 {{get("Settings.plan"), ""},
                  {get("Settings.healthy"), withUnit(_settings.healthyTime, second)},
                  {get("Settings.reset"), withUnit(_settings.resetTime, second)},
                  {get("Settings.ramp"), format(get("Settings.rampValue"), shortest(_settings.rampTime))},
                  {get("Settings.steps"), withUnit(_settings.voltageStep * 100.0, percent) + ", " +
                                              withUnit(_settings.frequencyStep, get("Unit.hertz")) + ", " +
                                              withUnit(_settings.rateStep * 100.0, percent)},
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
    const double way =
        std::max(highest * Steps::ratePulse, std::fabs(Steps::operateValue(_settings, FrequencyRate)) *
                                                 Steps::operateLimit(_settings, FrequencyRate));
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
        if (!_settings.stages[i].isUsed)
            continue;
        plan.push_back(kind == FrequencyRate ? _planRatePickUp() : _planPickUp(kind));
        if (kind != FrequencyRate)
            plan.push_back(_planDropOff(kind));
        plan.push_back(_planOperateTime(kind));
    }
    for (auto& planned : plan)
        planned.guard = Steps::guard(_settings);
    return plan;
}

PlannedMeasurement VoltageFrequencyTest::_planPickUp(StageKind kind) const
{
    const auto& stage = _settings.stages[kind];
    const auto ramp = Steps::pickUpRamp(_settings, kind);
    const double late = ramp.rate * responseTime;
    const bool isFalling = ramp.to < ramp.from;
    auto planned = planOf(kind, "pickUp");
    planned.expected = stage.setting;
    planned.lower = stage.setting - stage.tolerance - (isFalling ? late : 0.0);
    planned.upper = stage.setting + stage.tolerance + (isFalling ? 0.0 : late);
    planned.seconds = _settings.healthyTime + ramp.getSeconds() / 2.0;
    planned.sequences = {Steps::pickUp(_settings, kind)};
    planned.read = [settings = _settings, ramp](std::size_t, const SequenceRecord& record) -> MaybeReading {
        return readPickUp(settings, ramp, record);
    };
    return planned;
}

PlannedMeasurement VoltageFrequencyTest::_planDropOff(StageKind kind) const
{
    const auto& stage = _settings.stages[kind];
    const auto ramp = Steps::dropOffRamp(_settings, kind);
    const double late = ramp.rate * responseTime;
    const bool isFalling = ramp.to < ramp.from;
    auto planned = planOf(kind, "dropOff");
    planned.expected = stage.dropOff;
    planned.lower = stage.dropOff - stage.tolerance - (isFalling ? late : 0.0);
    planned.upper = stage.dropOff + stage.tolerance + (isFalling ? 0.0 : late);
    planned.seconds = _settings.healthyTime + ramp.getSeconds() / 2.0;
    planned.sequences = {Steps::dropOff(_settings, kind)};
    planned.read = [settings = _settings, ramp](std::size_t, const SequenceRecord& record) -> MaybeReading {
        return readDropOff(settings, ramp, record);
    };
    return planned;
}

PlannedMeasurement VoltageFrequencyTest::_planRatePickUp() const
{
    const auto& stage = _settings.stages[FrequencyRate];
    const double direction = directionOf(_settings, FrequencyRate);
    const double step = direction * stage.tolerance * rateFraction;
    auto planned = planOf(FrequencyRate, "pickUp");
    planned.expected = stage.setting;
    planned.lower = stage.setting - stage.tolerance + std::min(step, 0.0);
    planned.upper = stage.setting + stage.tolerance + std::max(step, 0.0);
    planned.seconds = (_settings.healthyTime + Steps::ratePulse) * ratePulses / 2.0;
    std::vector<double> rates;
    for (int i = 0; i < ratePulses; ++i)
        rates.push_back(stage.setting + step * (i - ratePulses / 2));
    for (const double rate : rates)
        planned.sequences.push_back(Steps::ratePulseOf(_settings, rate));
    planned.read = [settings = _settings, rates](std::size_t sequence, const SequenceRecord& record) {
        auto reading = readChange(settings, settings.startInput, record);
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
    planned.unit = get("Unit.second");
    planned.decimals = 3;
    planned.expected = stage.delay;
    planned.lower = std::max(0.0, stage.delay - stage.timeTolerance);
    planned.upper = stage.delay + stage.timeTolerance;
    planned.seconds = _settings.healthyTime + stage.delay;
    planned.sequences = {Steps::operateTime(_settings, kind)};
    planned.read = [settings = _settings](std::size_t, const SequenceRecord& record) {
        return readChange(settings, settings.tripInput, record);
    };
    return planned;
}

std::shared_ptr<KesDriver::ISimulatedTestObject> VoltageFrequencyTest::makeTestObject() const
{
    KesDriver::VoltageFrequencyRelay::Settings relay;
    relay.nominalVoltage = _settings.nominalVoltage;
    relay.tripInput = _settings.tripInput;
    relay.startInput = _settings.startInput;
    constexpr double rateDropOff = 0.9;
    for (std::size_t i = 0; i < StageCount; ++i) {
        const auto kind = static_cast<StageKind>(i);
        const auto& stage = _settings.stages[i];
        const double dropOff = isVoltage(kind)         ? stage.dropOff / stage.setting
                               : kind == FrequencyRate ? rateDropOff
                                                       : std::fabs(stage.dropOff - stage.setting);
        relay.stages[i] = {stage.isUsed, stage.setting, stage.delay, dropOff};
    }
    return std::make_shared<KesDriver::VoltageFrequencyRelay>(relay);
}

} // namespace VoltageFrequency
