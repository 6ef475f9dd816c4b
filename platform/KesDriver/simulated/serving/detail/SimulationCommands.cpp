// SIMulation: what is done to a simulated device, by whoever stands at its bench.

#include <KesDriver/simulated/serving/detail/Commands.h>

#include <KesCommon/NumberText.h>
#include <KesDriver/detail/Refusing.h>
#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>
#include <KesDriver/scpi/Text.h>
#include <KesDriver/simulated/relays/RelayCatalog.h>

#include <limits>

namespace KesDriver::Commands {

namespace {

using Kes::NumberText::write;
using Scpi::ErrorCode;

constexpr std::size_t mostSettings = 100;
constexpr double longestDelay = 3600.0;

void setSpeed(Call& call)
{
    const double factor = call.arguments.readNumber();
    if (!call.dialogue.use([=](SimulatedDevice& device) { return device.setSpeed(factor); }))
        throw Scpi::Error(ErrorCode::OutOfRange, "the speed is a millionth to a million");
}

void setBurden(Call& call)
{
    const double ohms = call.arguments.readNumber(Scpi::Quantity::Resistance);
    if (!(ohms >= 0.0))
        throw Scpi::Error(ErrorCode::OutOfRange, "the burden");
    call.dialogue.use([=](SimulatedDevice& device) { device.setBurden(ohms); });
}

void setInput(Call& call)
{
    const auto input = call.arguments.readInteger(1, call.dialogue.getDevice().getLimits().binaryInputs);
    const bool isClosed = call.arguments.readBoolean();
    call.dialogue.use(
        [=](SimulatedDevice& device) { device.setInput(static_cast<unsigned>(input), isClosed); });
}

void wire(Call& call)
{
    const auto kind = call.arguments.readText();
    std::vector<std::string> settings;
    while (call.arguments.hasMore())
        settings.push_back(call.arguments.readText());
    std::shared_ptr<ISimulatedTestObject> relay;
    if (Scpi::toUpper(kind) != "NONE")
        if (const auto result = RelayCatalog::make(kind, settings, relay); !result)
            throw Scpi::Error(ErrorCode::IllegalParameter, result.getError()->getMessage());
    if (!call.dialogue.use([&](SimulatedDevice& device) { return device.connectTestObject(relay); }))
        throw Scpi::Error(ErrorCode::SettingsConflict, "a sequence runs or waits for its start");
}

void askKinds(Call& call)
{
    for (const auto& kind : RelayCatalog::getKinds())
        call.answer += (call.answer.empty() ? "" : ",") + FieldText::quote(kind);
}

void raiseChannelFault(Call& call, bool KesAvaryChannel::*fault)
{
    const auto channel = static_cast<std::size_t>(call.arguments.readInteger(1, channelCount) - 1);
    call.dialogue.use([=](SimulatedDevice& device) {
        device.raiseFault([=](SimulatedFaults& faults) { faults.channels[channel].*fault = true; });
    });
}

void setFault(Call& call)
{
    enum Word : std::size_t { Overload, Overheat, Lost, Quick, Clear };
    const auto word = call.arguments.readChoice({"OVERload", "HEAT", "LOST", "QUICk", "CLEar"});
    if (word == Overload)
        return raiseChannelFault(call, &KesAvaryChannel::isOverload);
    if (word == Overheat)
        return raiseChannelFault(call, &KesAvaryChannel::isOverheat);
    if (word == Lost)
        return raiseChannelFault(call, &KesAvaryChannel::isDisconnected);
    call.arguments.end();
    call.dialogue.use([=](SimulatedDevice& device) {
        if (word == Clear)
            device.clearFaults();
        else
            device.raiseFault([](SimulatedFaults& faults) { faults.isQuickShutdown = true; });
    });
}

void setSilent(Call& call)
{
    const bool isSilent = call.arguments.readBoolean();
    call.dialogue.getDevice().getSessions().setSilent(isSilent, call.dialogue.getNumber());
}

void setDelay(Call& call)
{
    const double seconds = call.arguments.readNumber(Scpi::Quantity::Time);
    if (!(seconds >= 0.0 && seconds <= longestDelay))
        throw Scpi::Error(ErrorCode::OutOfRange, "the delay is 0 to 3600 s");
    const auto delay = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
    call.dialogue.getDevice().getSessions().setDelay(delay, call.dialogue.getNumber());
}

void setNonsense(Call& call)
{
    const bool isOn = call.arguments.readBoolean();
    call.dialogue.use([=](SimulatedDevice& device) { device.setNonsense(isOn); });
}

void setLockstep(Call& call)
{
    const bool isOn = call.arguments.readBoolean();
    call.dialogue.getDevice().getControl().setLockstep(call.dialogue.getNumber(), isOn);
}

template <typename Read>
auto ask(Call& call, Read read)
{
    return call.dialogue.use([&](SimulatedDevice& device) { return read(device); });
}

} // namespace

void addSimulation(Table& table)
{
    table.add("SIMulation:SPEed", {setSpeed, 1});
    table.add("SIMulation:SPEed?", {[](Call& call) {
        call.answer = write(ask(call, [](SimulatedDevice& device) { return device.getSpeed(); }));
    }});
    table.add("SIMulation:BURDen", {setBurden, 1});
    table.add("SIMulation:INPut", {setInput, 2});
    table.add("SIMulation:WIRE", {wire, 1 + mostSettings});
    table.add("SIMulation:WIRE:CATalog?", {askKinds});
    table.add("SIMulation:FAULt", {setFault, 2});
    table.add("SIMulation:SILent", {setSilent, 1});
    table.add("SIMulation:DELay", {setDelay, 1});
    table.add("SIMulation:GARBle", {setNonsense, 1});
    table.add("SIMulation:DROP",
              {[](Call& call) { call.dialogue.getDevice().getSessions().dropOthers(call.dialogue.getNumber()); }});
    table.add("SIMulation:OUTPuts?", {[](Call& call) {
        call.answer = ValueText::write(ask(call, [](SimulatedDevice& device) { return device.getOutputs(); }));
    }});
    table.add("SIMulation:ENERgisings?", {[](Call& call) {
        call.answer = std::to_string(ask(call, [](SimulatedDevice& device) { return device.getEnergisings(); }));
    }});
    table.add("SIMulation:OFF?", {[](Call& call) {
        call.answer = std::to_string(ask(call, [](SimulatedDevice& device) { return device.getZeroTime().count(); }));
    }});
    table.add("SIMulation:LOCKstep", {setLockstep, 1});
}

} // namespace KesDriver::Commands
