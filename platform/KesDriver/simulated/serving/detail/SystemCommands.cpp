// SYSTem and CALibration: what a device says about itself, and who has control of it.

#include <KesDriver/simulated/serving/detail/Commands.h>

#include <KesCommon/NumberText.h>
#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>
#include <KesDriver/scpi/Text.h>

namespace KesDriver::Commands {

namespace {

constexpr const char* scpiVersion = "1999.0";
constexpr const char* protocolVersion = "1.0";
constexpr double shortestWatchdog = 0.2;
constexpr double longestWatchdog = 10.0;
constexpr std::size_t longestName = 100;

void askError(Call& call)
{
    call.answer =
        call.dialogue.useStatus([](Scpi::InstrumentStatus& status) { return status.takeError().toAnswer(); });
}

void countErrors(Call& call)
{
    call.answer = std::to_string(
        call.dialogue.useStatus([](Scpi::InstrumentStatus& status) { return status.getErrorCount(); }));
}

void askClock(Call& call)
{
    DeviceTime time{0};
    call.dialogue.read([&](SimulatedDevice& device) { return device.readTime(time); });
    call.answer = std::to_string(time.count());
}

void askBothClocks(Call& call)
{
    ClockReading reading;
    call.dialogue.read([&](SimulatedDevice& device) { return device.readClock(reading); });
    call.answer = std::to_string(reading.device.count()) + ',' + std::to_string(reading.common.count());
}

void askLimits(Call& call)
{
    OutputLimits limits;
    call.dialogue.read([&](SimulatedDevice& device) { return device.readLimits(limits); });
    call.answer = ValueText::write(limits);
}

ValueText::Stage getStage(const SimulatedDevice& device)
{
    if (device.isArmed())
        return ValueText::Stage::Armed;
    return device.hasSequence() ? ValueText::Stage::Running : ValueText::Stage::Idle;
}

void askState(Call& call)
{
    ValueText::DeviceStatus status;
    call.dialogue.read([&](SimulatedDevice& device) {
        status.isWorking = device.isWorking();
        status.stage = getStage(device);
        return device.readState(status.state);
    });
    call.answer = ValueText::write(status);
}

void askFault(Call& call)
{
    call.answer = ValueText::writeFaults(call.dialogue.use(
        [](SimulatedDevice& device) { return device.getFaults().toAvary(device.getIdentity().identifer); }));
}

void askCalibration(Call& call)
{
    KestoIdentity identity;
    call.dialogue.read([&](SimulatedDevice& device) { return device.identify(identity); });
    constexpr std::size_t longestDate = 100;
    call.answer = FieldText::quote(Scpi::cut(identity.calibrationDate, longestDate));
}

void echo(Call& call)
{
    call.answer = std::to_string(call.arguments.readInteger(-greatest, greatest));
}

void take(Call& call)
{
    const auto name = Scpi::cut(call.arguments.readText(), longestName);
    auto& dialogue = call.dialogue;
    dialogue.getDevice().getControl().take({dialogue.getNumber(), name, dialogue.getAddress()});
    dialogue.setWatchdog({});
}

void release(Call& call)
{
    auto& dialogue = call.dialogue;
    auto& control = dialogue.getDevice().getControl();
    control.check(dialogue.getNumber());
    control.release(dialogue.getNumber(), "control was given back");
    dialogue.setWatchdog({});
}

void askOwner(Call& call)
{
    const auto owner = call.dialogue.getDevice().getControl().getOwner();
    call.answer = FieldText::quote(owner.name) + ',' + FieldText::quote(owner.address);
}

double readWatchdog(Scpi::Arguments& arguments)
{
    if (arguments.isWordNext()) {
        arguments.readChoice({"OFF"});
        return 0.0;
    }
    const double seconds = arguments.readNumber(Scpi::Quantity::Time);
    if (!(seconds >= shortestWatchdog && seconds <= longestWatchdog))
        throw Scpi::Error(Scpi::ErrorCode::OutOfRange, "the watchdog's time is 0.2 to 10 s, or OFF");
    return seconds;
}

void setWatchdog(Call& call)
{
    const double seconds = readWatchdog(call.arguments);
    call.dialogue.getDevice().getControl().check(call.dialogue.getNumber());
    call.dialogue.setWatchdog(std::chrono::duration<double>(seconds));
}

} // namespace

void addSystem(Table& table)
{
    table.add("SYSTem:ERRor[:NEXT]?", {askError});
    table.add("SYSTem:ERRor:COUNt?", {countErrors});
    table.add("SYSTem:VERSion?", {[](Call& call) { call.answer = scpiVersion; }});
    table.add("SYSTem:PROTocol?", {[](Call& call) { call.answer = protocolVersion; }});
    table.add("SYSTem:BOOT?",
              {[](Call& call) { call.answer = std::to_string(call.dialogue.getDevice().getBoot()); }});
    table.add("SYSTem:CLOCk?", {askClock});
    table.add("SYSTem:CLOCk:COMMon?", {askBothClocks});
    table.add("SYSTem:LIMits?", {askLimits});
    table.add("SYSTem:STATe?", {askState});
    table.add("SYSTem:FAULt?", {askFault});
    table.add("SYSTem:SIMulated?", {[](Call& call) { call.answer = "1"; }});
    table.add("SYSTem:ECHO?", {echo, 1});
    table.add("CALibration:DATE?", {askCalibration});
}

void addControl(Table& table)
{
    table.add("SYSTem:CONTrol:TAKE", {take, 1});
    table.add("SYSTem:CONTrol:RELease", {release});
    table.add("SYSTem:CONTrol:OWNer?", {askOwner});
    table.add("SYSTem:CONTrol?", {[](Call& call) {
                  call.answer =
                      flag(call.dialogue.getDevice().getControl().isOwner(call.dialogue.getNumber()));
              }});
    table.add("SYSTem:WATChdog", {setWatchdog, 1});
    table.add("SYSTem:WATChdog?", {[](Call& call) {
                  call.answer = Kes::NumberText::write(call.dialogue.getWatchdog().count());
              }});
}

} // namespace KesDriver::Commands
