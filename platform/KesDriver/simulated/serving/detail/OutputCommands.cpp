// OUTPut, SOURce and ABORt: what a device puts out at once.

#include <KesDriver/simulated/serving/detail/Commands.h>

#include <KesCommon/NumberText.h>
#include <KesDriver/net/ValueText.h>

#include <limits>

namespace KesDriver::Commands {

namespace {

using Kes::NumberText::write;
using Scpi::Quantity;

constexpr unsigned phases = 3;
constexpr double leastAuxVolts = 12.0;

OutputState getOutputs(Call& call)
{
    return call.dialogue.use([](SimulatedDevice& device) { return device.getOutputs(); });
}

/// Changes what is put out at this moment.
template <typename Change>
void change(Call& call, const Change& apply)
{
    call.dialogue.control([&](SimulatedDevice& device) {
        auto outputs = device.getOutputs();
        apply(outputs);
        return device.setOutputs(outputs);
    });
}

unsigned getPhase(const Call& call)
{
    const auto number = call.suffixes.front();
    if (number < 1 || number > phases)
        throw Scpi::Error(Scpi::ErrorCode::HeaderSuffixOutOfRange);
    return number;
}

/// The channels of the list, or the one of the header.
std::vector<unsigned> readPhases(Call& call)
{
    const auto phase = getPhase(call);
    return call.arguments.hasMore() ? call.arguments.readChannels(phases) : std::vector<unsigned>{phase};
}

template <auto Group, auto Field, Quantity Unit>
void setPhasor(Call& call)
{
    const double value = call.arguments.readNumber(Unit);
    const auto numbers = readPhases(call);
    change(call, [&](OutputState& outputs) {
        for (const auto number : numbers)
            (outputs.*Group)[number - 1].*Field = value;
    });
}

template <auto Group, auto Field>
void askPhasor(Call& call)
{
    call.answer = write((getOutputs(call).*Group)[getPhase(call) - 1].*Field);
}

template <auto Field>
void setHertz(Call& call)
{
    const double value = call.arguments.readNumber(Quantity::Frequency);
    change(call, [=](OutputState& outputs) { outputs.*Field = value; });
}

template <auto Group, auto Hertz, Quantity Unit>
void addGroup(Table& table, const std::string& name)
{
    const auto node = "[SOURce:]" + name;
    table.add(node + "<n>[:LEVel]", {setPhasor<Group, &Phasor::magnitude, Unit>, 2});
    table.add(node + "<n>[:LEVel]?", {askPhasor<Group, &Phasor::magnitude>});
    table.add(node + "<n>:PHASe", {setPhasor<Group, &Phasor::degrees, Quantity::Angle>, 2});
    table.add(node + "<n>:PHASe?", {askPhasor<Group, &Phasor::degrees>});
    table.add(node + ":FREQuency", {setHertz<Hertz>, 1});
    table.add(node + ":FREQuency?", {[](Call& call) { call.answer = write(getOutputs(call).*Hertz); }});
}

void setDigital(Call& call)
{
    const auto mask =
        static_cast<std::uint32_t>(call.arguments.readInteger(0, std::numeric_limits<std::uint32_t>::max()));
    change(call, [=](OutputState& outputs) { outputs.binaryOutputs = mask; });
}

void apply(Call& call)
{
    const auto outputs = readOutputs(call.arguments);
    call.dialogue.control([&](SimulatedDevice& device) { return device.setOutputs(outputs); });
}

void switchAmplifiers(Call& call)
{
    const bool isOn = call.arguments.readBoolean();
    call.dialogue.control(
        [=](SimulatedDevice& device) { return isOn ? device.startWorkingMode() : device.stopWorkingMode(); });
}

/// Without volts, those of the last time.
void switchAuxiliary(Call& call)
{
    const bool isOn = call.arguments.readBoolean();
    std::optional<double> volts;
    if (call.arguments.hasMore())
        volts = call.arguments.readNumber(Quantity::Voltage);
    bool isUnknown = false;
    call.dialogue.control([=, &isUnknown](SimulatedDevice& device) -> Kes::Result {
        const double last = device.getAuxDCVolts();
        isUnknown = isOn && !volts && last == 0.0;
        if (isUnknown)
            return true;
        return device.setAuxDC(isOn, volts.value_or(std::max(last, leastAuxVolts)));
    });
    // Not in the device, which takes everything that is thrown for its own failure.
    if (isUnknown)
        throw Scpi::Error(Scpi::ErrorCode::MissingParameter, "the voltage");
}

void askAuxiliary(Call& call)
{
    call.answer = call.dialogue.use([](SimulatedDevice& device) {
        return flag(device.isAuxDCEnabled()) + (',' + write(device.getAuxDCVolts()));
    });
}

void abort(Call& call)
{
    call.dialogue.control([](SimulatedDevice& device) { return device.stopOutputs(); });
}

} // namespace

OutputState readOutputs(Scpi::Arguments& arguments)
{
    std::vector<double> numbers;
    for (const auto unit : {Quantity::Current, Quantity::Voltage})
        for (unsigned phase = 0; phase < phases; ++phase) {
            numbers.push_back(arguments.readNumber(unit));
            numbers.push_back(arguments.readNumber(Quantity::Angle));
        }
    for (int group = 0; group < 2; ++group)
        numbers.push_back(arguments.readNumber(Quantity::Frequency));
    numbers.push_back(
        static_cast<double>(arguments.readInteger(0, std::numeric_limits<std::uint32_t>::max())));
    const auto outputs = ValueText::toOutputs(numbers);
    if (!outputs)
        throw Scpi::Error(Scpi::ErrorCode::NumericData);
    return *outputs;
}

void addOutputs(Table& table)
{
    table.add("OUTPut[:STATe]", {switchAmplifiers, 1});
    table.add("OUTPut[:STATe]?", {[](Call& call) {
                  call.answer =
                      flag(call.dialogue.use([](SimulatedDevice& device) { return device.isWorking(); }));
              }});
    table.add("OUTPut:AUXiliary", {switchAuxiliary, 2});
    table.add("OUTPut:AUXiliary?", {askAuxiliary});
    addGroup<&OutputState::currents, &OutputState::currentHertz, Quantity::Current>(table, "CURRent");
    addGroup<&OutputState::voltages, &OutputState::voltageHertz, Quantity::Voltage>(table, "VOLTage");
    table.add("[SOURce:]DIGital", {setDigital, 1});
    table.add("[SOURce:]DIGital?",
              {[](Call& call) { call.answer = std::to_string(getOutputs(call).binaryOutputs); }});
    table.add("[SOURce:]APPLy", {apply, ValueText::stateNumbers});
    table.add("[SOURce:]APPLy?", {[](Call& call) { call.answer = ValueText::write(getOutputs(call)); }});
    table.add("ABORt", {abort});
}

} // namespace KesDriver::Commands
