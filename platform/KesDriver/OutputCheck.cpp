#include <KesCommon/UnitText.h>
#include <KesDriver/OutputCheck.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/detail/Refusing.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace KesDriver {

namespace {

constexpr const char* channelNames[channelCount] = {"IA", "IB", "IC", "UA", "UB", "UC"};

struct Range {
    double minimum;
    double maximum;
    const lng::Text& unit;
};

/// Outputs at one moment of a step, and what their names are followed by in a refusal.
struct Moment {
    OutputState outputs;
    const char* nameText;

    std::string name(const char* plain) const
    {
        return nameText ? Kes::StringHelper::format(lng::Driver::get(nameText), plain) : plain;
    }
};

Kes::Result exceeds(const char* key, const std::string& name, double value, double limit, const char* unit)
{
    return refuse(key, name, Kes::NumberText::show(value), unit, Kes::NumberText::show(limit), unit);
}

/// The name is made for a refusal only: a sequence has a hundred thousand values.
template <typename GetName>
Kes::Result checkValue(const GetName& getName, double value, const Range& range)
{
    if (value >= range.minimum && value <= range.maximum)
        return true;
    const std::string name = getName();
    if (std::isnan(value))
        return refuse("Limit.notANumber", name);
    if (value > range.maximum)
        return exceeds("Limit.above", name, value, range.maximum, range.unit.get());
    return exceeds("Limit.below", name, value, range.minimum, range.unit.get());
}

/// The name of a value as the table has it.
auto nameOf(const char* key)
{
    return [key] { return lng::Driver::get(key); };
}

Range amperes(const OutputLimits& limits)
{
    return {0.0, limits.maximumAmperes, lng::Unit::ampere};
}

Range volts(const OutputLimits& limits)
{
    return {0.0, limits.maximumVolts, lng::Unit::volt};
}

Range hertz(const OutputLimits& limits)
{
    return {limits.minimumHertz, limits.maximumHertz, lng::Unit::hertz};
}

Kes::Result checkGroup(const Moment& moment, const std::array<Phasor, 3>& phasors, unsigned firstChannel,
                       const Range& range)
{
    for (const auto& phasor : phasors) {
        const auto getName = [&, channel = firstChannel++] { return moment.name(getChannelName(channel)); };
        if (auto result = checkValue(getName, phasor.magnitude, range); !result)
            return result;
        if (!std::isfinite(phasor.degrees))
            return refuse("Limit.phaseNotANumber", getName());
    }
    return true;
}

Kes::Result checkFrequencies(const Moment& moment, const Range& range)
{
    const auto check = [&](const char* key, double value) {
        return checkValue([&] { return moment.name(lng::Driver::get(key)); }, value, range);
    };
    const auto& outputs = moment.outputs;
    if (outputs.currentHertz == outputs.voltageHertz)
        return check("Limit.frequency", outputs.currentHertz);
    auto result = check("Limit.currentFrequency", outputs.currentHertz);
    return result ? check("Limit.voltageFrequency", outputs.voltageHertz) : result;
}

Kes::Result checkMoment(const Moment& moment, const OutputLimits& limits)
{
    if (auto result = checkGroup(moment, moment.outputs.currents, 0, amperes(limits)); !result)
        return result;
    if (auto result = checkGroup(moment, moment.outputs.voltages, 3, volts(limits)); !result)
        return result;
    return checkFrequencies(moment, hertz(limits));
}

/// The value at the end of a ramp; on the limit when it misses it by a rounding only.
double rampEnd(double value, double rate, double seconds, const Range& range)
{
    constexpr double tolerance = 1e-9;
    const double end = value + rate * seconds;
    for (const double limit : {range.minimum, range.maximum})
        if (std::abs(end - limit) <= tolerance * std::max(1.0, std::abs(limit)))
            return limit;
    return end;
}

void endRamp(std::array<Phasor, 3>& phasors, const std::array<PhasorRate, 3>& rates, double seconds,
             const Range& range)
{
    for (std::size_t i = 0; i < phasors.size(); ++i) {
        phasors[i].magnitude = rampEnd(phasors[i].magnitude, rates[i].magnitude, seconds, range);
        phasors[i].degrees += rates[i].degrees * seconds;
    }
}

Kes::Result checkRampEnd(const OutputStep& step, const OutputLimits& limits)
{
    if (step.ramp == OutputRamp{})
        return true;
    const double seconds = toSeconds(step.duration);
    Moment end{step.outputs, "Limit.rampEnd"};
    endRamp(end.outputs.currents, step.ramp.currents, seconds, amperes(limits));
    endRamp(end.outputs.voltages, step.ramp.voltages, seconds, volts(limits));
    for (auto [value, rate] : {std::pair{&end.outputs.currentHertz, step.ramp.currentHertz},
                               std::pair{&end.outputs.voltageHertz, step.ramp.voltageHertz}})
        *value = rampEnd(*value, rate, seconds, hertz(limits));
    return checkMoment(end, limits);
}

Kes::Result checkEndCondition(const EndCondition& condition, const OutputLimits& limits)
{
    if (condition.inputs.empty())
        return refuse("Sequence.noCondition");
    for (const auto& wanted : condition.inputs)
        if (auto result = checkInput(wanted.input, limits); !result)
            return result;
    return checkValue(nameOf("Limit.debounce"), toSeconds(condition.debounce),
                      {0.0, toSeconds(maximumDebounce), lng::Unit::second});
}

Kes::Result checkStep(const OutputStep& step, const OutputLimits& limits)
{
    if (auto result = checkOutputs(step.outputs, limits); !result)
        return result;
    const Range durations{toSeconds(DeviceTime(1)), toSeconds(maximumStepDuration), lng::Unit::second};
    if (auto result = checkValue(nameOf("Limit.duration"), toSeconds(step.duration), durations); !result)
        return result;
    if (auto result = checkRampEnd(step, limits); !result)
        return result;
    if (step.faultDegrees && !std::isfinite(*step.faultDegrees))
        return refuse("Limit.notANumber", lng::Driver::get("Limit.faultAngle"));
    return step.endOn ? checkEndCondition(*step.endOn, limits) : Kes::Result(true);
}

} // namespace

const char* getChannelName(unsigned channel)
{
    return channel < channelCount ? channelNames[channel] : "";
}

Kes::Result checkOutputs(const OutputState& outputs, const OutputLimits& limits)
{
    if (auto result = checkMoment({outputs, nullptr}, limits); !result)
        return result;
    constexpr unsigned width = 32;
    for (unsigned i = std::min(limits.binaryOutputs, width); i < width; ++i)
        if ((outputs.binaryOutputs >> i & 1U) != 0)
            return refuse("Limit.noOutput", i + 1, limits.binaryOutputs);
    return true;
}

Kes::Result checkSequence(const OutputSequence& sequence, const OutputLimits& limits)
{
    if (sequence.empty())
        return refuse("Sequence.empty");
    if (sequence.size() > limits.maximumSteps)
        return refuse("Sequence.tooLong", sequence.size(), limits.maximumSteps);
    unsigned number = 0;
    for (const auto& step : sequence) {
        ++number;
        if (const auto result = checkStep(step, limits); !result)
            return refuseAs(result, "Sequence.step", number, result.getError()->getMessage());
    }
    return true;
}

Kes::Result checkInput(unsigned input, const OutputLimits& limits)
{
    if (input >= 1 && input <= limits.binaryInputs)
        return true;
    return refuse("Sequence.noInput", input, limits.binaryInputs);
}

Kes::Result checkAuxDC(double value)
{
    const Range range{minimumAuxDCVolts, maximumAuxDCVolts, lng::Unit::volt};
    return checkValue(nameOf("Limit.auxDC"), value, range);
}

} // namespace KesDriver
