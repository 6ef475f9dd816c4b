#include <KesDriver/OutputCheck.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>

#include <cmath>
#include <string>

namespace KesDriver {

namespace {

constexpr const char* channelNames[channelCount] = {"IA", "IB", "IC", "UA", "UB", "UC"};

struct Range {
    double minimum;
    double maximum;
    const char* unit;
};

Kes::Result refuse(const char* text, const char* name, double value, double limit, const char* unit)
{
    return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get(text), name,
                                                          Kes::NumberText::show(value), unit,
                                                          Kes::NumberText::show(limit), unit));
}

Kes::Result checkValue(const char* name, double value, const Range& range)
{
    if (std::isnan(value))
        return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Limit.notANumber"), name));
    if (value > range.maximum)
        return refuse("Limit.above", name, value, range.maximum, lng::Driver::get(range.unit));
    if (value < range.minimum)
        return refuse("Limit.below", name, value, range.minimum, lng::Driver::get(range.unit));
    return true;
}

Kes::Result checkPhasor(const char* name, const Phasor& phasor, const Range& range)
{
    if (auto result = checkValue(name, phasor.magnitude, range); !result)
        return result;
    if (!std::isfinite(phasor.degrees))
        return Kes::Result::failure(
            Kes::StringHelper::format(lng::Driver::get("Limit.phaseNotANumber"), name));
    return true;
}

double toSeconds(DeviceTime time)
{
    return std::chrono::duration<double>(time).count();
}

Kes::Result checkStep(const OutputStep& step, const OutputLimits& limits)
{
    if (auto result = checkOutputs(step.outputs, limits); !result)
        return result;
    const Range durations{toSeconds(DeviceTime(1)), toSeconds(maximumStepDuration), "Unit.second"};
    if (auto result = checkValue(lng::Driver::get("Limit.duration"), toSeconds(step.duration), durations);
        !result)
        return result;
    if (!step.endOn || (step.endOn->input >= 1 && step.endOn->input <= limits.binaryInputs))
        return true;
    return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Sequence.noInput"),
                                                          step.endOn->input, limits.binaryInputs));
}

} // namespace

const char* getChannelName(unsigned channel)
{
    return channel < channelCount ? channelNames[channel] : "";
}

Kes::Result checkOutputs(const OutputState& outputs, const OutputLimits& limits)
{
    const Range amperes{0.0, limits.maximumAmperes, "Unit.ampere"};
    for (unsigned i = 0; i < outputs.currents.size(); ++i)
        if (auto result = checkPhasor(getChannelName(i), outputs.currents[i], amperes); !result)
            return result;
    const Range volts{0.0, limits.maximumVolts, "Unit.volt"};
    for (unsigned i = 0; i < outputs.voltages.size(); ++i)
        if (auto result = checkPhasor(getChannelName(3 + i), outputs.voltages[i], volts); !result)
            return result;
    const Range hertz{limits.minimumHertz, limits.maximumHertz, "Unit.hertz"};
    return checkValue(lng::Driver::get("Limit.frequency"), outputs.frequency, hertz);
}

Kes::Result checkSequence(const OutputSequence& sequence, const OutputLimits& limits)
{
    if (sequence.empty())
        return Kes::Result::failure(lng::Driver::get("Sequence.empty"));
    unsigned number = 0;
    for (const auto& step : sequence) {
        ++number;
        if (const auto result = checkStep(step, limits); !result)
            return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Sequence.step"), number,
                                                                  result.getError()->getMessage()));
    }
    return true;
}

Kes::Result checkAuxDC(double volts)
{
    const Range range{minimumAuxDCVolts, maximumAuxDCVolts, "Unit.volt"};
    return checkValue(lng::Driver::get("Limit.auxDC"), volts, range);
}

} // namespace KesDriver
