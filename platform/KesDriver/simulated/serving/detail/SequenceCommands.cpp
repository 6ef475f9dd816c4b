// SEQuence, INITiate and TRIGger: what a device runs by itself.

#include <KesDriver/simulated/serving/detail/Commands.h>

#include <KesDriver/net/ValueText.h>

#include <algorithm>
#include <iterator>
#include <limits>

namespace KesDriver::Commands {

namespace {

constexpr std::size_t mostConditions = 256;

OutputStep& getLastStep(Call& call)
{
    auto& sequence = call.dialogue.getSequence();
    if (sequence.empty())
        throw Scpi::Error(Scpi::ErrorCode::SettingsConflict, "there is no step");
    return sequence.back();
}

DeviceTime readTime(Scpi::Arguments& arguments)
{
    const auto time = ValueText::toTime(arguments.readNumber(Scpi::Quantity::Time));
    if (!time)
        throw Scpi::Error(Scpi::ErrorCode::OutOfRange, "the time");
    return *time;
}

std::size_t getMostSteps(const Call& call)
{
    return call.dialogue.getDevice().getLimits().maximumSteps;
}

[[noreturn]] void refuseLength(const Call& call)
{
    throw Scpi::Error(Scpi::ErrorCode::TooMuchData,
                      "a sequence has " + std::to_string(getMostSteps(call)) + " steps at most");
}

void addStep(Call& call)
{
    OutputStep step;
    step.duration = readTime(call.arguments);
    step.outputs = readOutputs(call.arguments);
    auto& sequence = call.dialogue.getSequence();
    if (sequence.size() >= getMostSteps(call))
        refuseLength(call);
    sequence.push_back(std::move(step));
}

void setRamp(Call& call)
{
    std::vector<double> numbers;
    while (numbers.size() < ValueText::rampNumbers)
        numbers.push_back(call.arguments.readNumber());
    const auto ramp = ValueText::toRamp(numbers);
    if (!ramp)
        throw Scpi::Error(Scpi::ErrorCode::NumericData);
    getLastStep(call).ramp = *ramp;
}

void setEnd(Call& call)
{
    const bool isAll = call.arguments.readChoice({"ANY", "ALL"}) == 1;
    EndCondition condition({}, isAll ? EndCondition::Join::All : EndCondition::Join::Any,
                           readTime(call.arguments));
    do {
        const auto text = call.arguments.readToken();
        const auto input = ValueText::readCondition(text);
        if (!input)
            throw Scpi::Error(Scpi::ErrorCode::IllegalParameter, text);
        condition.inputs.push_back(*input);
    } while (call.arguments.hasMore());
    getLastStep(call).endOn = std::move(condition);
}

void setAngle(Call& call)
{
    const double degrees = call.arguments.readNumber(Scpi::Quantity::Angle);
    getLastStep(call).faultDegrees = degrees;
}

/// The steps of a block, of which there may be so many.
OutputSequence readBlock(Call& call, std::size_t mostSteps)
{
    auto reading = ValueText::readSequence(call.arguments.readBlock(), mostSteps);
    if (reading.isTooLong)
        refuseLength(call);
    if (!reading.isGood())
        throw Scpi::Error(Scpi::ErrorCode::InvalidBlock, "line " + std::to_string(reading.wrongLine));
    return std::move(reading.sequence);
}

void setAll(Call& call)
{
    call.dialogue.getSequence() = readBlock(call, getMostSteps(call));
}

void appendAll(Call& call)
{
    auto& sequence = call.dialogue.getSequence();
    auto steps = readBlock(call, getMostSteps(call) - std::min(getMostSteps(call), sequence.size()));
    std::move(steps.begin(), steps.end(), std::back_inserter(sequence));
}

void run(Call& call)
{
    call.dialogue.control(
        [&](SimulatedDevice& device) { return device.runSequence(call.dialogue.getSequence()); });
}

void arm(Call& call)
{
    call.dialogue.control(
        [&](SimulatedDevice& device) { return device.armSequence(call.dialogue.getSequence()); });
}

void start(Call& call, const StartMoment& moment)
{
    call.dialogue.control([&](SimulatedDevice& device) { return device.startArmed(moment); });
}

void startAt(Call& call)
{
    start(call, {CommonTime(call.arguments.readInteger(-greatest, greatest)), {}});
}

void startOnInput(Call& call)
{
    const auto input = call.arguments.readInteger(1, std::numeric_limits<unsigned>::max());
    start(call, {{}, static_cast<unsigned>(input)});
}

} // namespace

void addSequences(Table& table)
{
    table.add("SEQuence:CLEar", {[](Call& call) { call.dialogue.getSequence().clear(); }});
    table.add("SEQuence:STEP", {addStep, 1 + ValueText::stateNumbers});
    table.add("SEQuence:RAMP", {setRamp, ValueText::rampNumbers});
    table.add("SEQuence:END", {setEnd, 2 + mostConditions});
    table.add("SEQuence:ANGLe", {setAngle, 1});
    table.add("SEQuence:DATA", {setAll, 1});
    table.add("SEQuence:DATA:APPend", {appendAll, 1});
    table.add("SEQuence:COUNt?",
              {[](Call& call) { call.answer = std::to_string(call.dialogue.getSequence().size()); }});
    table.add("INITiate[:IMMediate]", {run});
    table.add("SEQuence:ARM", {arm});
    table.add("TRIGger[:IMMediate]", {[](Call& call) { start(call, {}); }});
    table.add("TRIGger:AT", {startAt, 1});
    table.add("TRIGger:INPut", {startOnInput, 1});
}

} // namespace KesDriver::Commands
