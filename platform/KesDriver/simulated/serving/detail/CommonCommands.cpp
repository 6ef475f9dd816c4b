// The common commands of IEEE 488.2, and the status registers of SCPI.

#include <KesDriver/simulated/serving/detail/Commands.h>

#include <KesDriver/net/ValueText.h>

namespace KesDriver::Commands {

namespace {

using Scpi::InstrumentStatus;
using Scpi::StatusRegister;

std::uint8_t readByte(Call& call)
{
    return static_cast<std::uint8_t>(call.arguments.readInteger(0, 255));
}

void identify(Call& call)
{
    KestoIdentity identity;
    call.dialogue.read([&](SimulatedDevice& device) { return device.identify(identity); });
    call.answer = ValueText::writeIdentity(identity);
}

void reset(Call& call)
{
    call.dialogue.control([](SimulatedDevice& device) {
        device.release();
        return Kes::Result(true);
    });
    call.dialogue.getSequence().clear();
}

void setEventEnable(Call& call)
{
    const auto bits = readByte(call);
    call.dialogue.useStatus([=](InstrumentStatus& status) { status.setStandardEnable(bits); });
}

void setServiceEnable(Call& call)
{
    const auto bits = readByte(call);
    call.dialogue.useStatus([=](InstrumentStatus& status) { status.setServiceEnable(bits); });
}

template <auto Get>
void ask(Call& call)
{
    const auto value = call.dialogue.useStatus([](InstrumentStatus& status) { return (status.*Get)(); });
    call.answer = std::to_string(value);
}

void askStatusByte(Call& call)
{
    const bool hasAnswer = call.dialogue.hasAnswer();
    call.answer = std::to_string(
        call.dialogue.useStatus([=](InstrumentStatus& status) { return status.getStatusByte(hasAnswer); }));
}

template <auto Register, auto Get>
void askRegister(Call& call)
{
    const auto bits =
        call.dialogue.useStatus([](InstrumentStatus& status) { return ((status.*Register).*Get)(); });
    call.answer = std::to_string(bits);
}

template <auto Register, auto Set>
void setRegister(Call& call)
{
    const auto bits = static_cast<StatusRegister::Bits>(call.arguments.readInteger(0, 65535));
    call.dialogue.useStatus([=](InstrumentStatus& status) { ((status.*Register).*Set)(bits); });
}

template <auto Register>
void addRegister(Table& table, const std::string& path)
{
    table.add(path + "[:EVENt]?", {askRegister<Register, &StatusRegister::takeEvents>});
    table.add(path + ":CONDition?", {askRegister<Register, &StatusRegister::getCondition>});
    table.add(path + ":ENABle", {setRegister<Register, &StatusRegister::setEnable>, 1});
    table.add(path + ":ENABle?", {askRegister<Register, &StatusRegister::getEnable>});
    table.add(path + ":PTRansition", {setRegister<Register, &StatusRegister::setPositive>, 1});
    table.add(path + ":PTRansition?", {askRegister<Register, &StatusRegister::getPositive>});
    table.add(path + ":NTRansition", {setRegister<Register, &StatusRegister::setNegative>, 1});
    table.add(path + ":NTRansition?", {askRegister<Register, &StatusRegister::getNegative>});
}

void preset(Call& call)
{
    call.dialogue.useStatus([](InstrumentStatus& status) {
        status.operation.preset();
        status.questionable.preset();
    });
}

} // namespace

void addCommon(Table& table)
{
    table.add("*IDN?", {identify});
    table.add("*RST", {reset});
    table.add("*TST?", {[](Call& call) { call.answer = "0"; }});
    table.add("*OPC", {[](Call& call) {
        call.dialogue.useStatus([](InstrumentStatus& status) { status.note(InstrumentStatus::OperationComplete); });
    }});
    table.add("*OPC?", {[](Call& call) { call.answer = "1"; }});
    table.add("*WAI", {[](Call&) {}});
    table.add("*CLS", {[](Call& call) {
        call.dialogue.useStatus([](InstrumentStatus& status) { status.clear(); });
    }});
    table.add("*ESE", {setEventEnable, 1});
    table.add("*ESE?", {ask<&InstrumentStatus::getStandardEnable>});
    table.add("*ESR?", {ask<&InstrumentStatus::takeStandardEvents>});
    table.add("*SRE", {setServiceEnable, 1});
    table.add("*SRE?", {ask<&InstrumentStatus::getServiceEnable>});
    table.add("*STB?", {askStatusByte});
}

void addStatus(Table& table)
{
    addRegister<&InstrumentStatus::operation>(table, "STATus:OPERation");
    addRegister<&InstrumentStatus::questionable>(table, "STATus:QUEStionable");
    table.add("STATus:PRESet", {preset});
}

} // namespace KesDriver::Commands
