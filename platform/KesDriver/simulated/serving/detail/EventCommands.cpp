// INPut and EVENt: what a device sees and what has happened to it.

#include <KesDriver/simulated/serving/detail/Commands.h>

#include <KesDriver/net/FieldText.h>

namespace KesDriver::Commands {

namespace {

constexpr long long mostEvents = 1000;

EventLog& getLog(const Call& call)
{
    return call.dialogue.getDevice().getEvents();
}

std::uint64_t readNumber(Call& call)
{
    return static_cast<std::uint64_t>(call.arguments.readInteger(1, greatest));
}

void askEvents(Call& call)
{
    const auto from = readNumber(call);
    const auto count = call.arguments.hasMore() ? call.arguments.readInteger(1, mostEvents) : mostEvents;
    for (const auto& event : getLog(call).read(from, static_cast<std::size_t>(count)))
        call.answer += (call.answer.empty() ? "" : ",") + FieldText::quote(event);
    if (call.answer.empty())
        call.answer = "\"\"";
}

void subscribe(Call& call)
{
    const bool isOn = call.arguments.readBoolean();
    const auto from = isOn && call.arguments.hasMore() ? readNumber(call) : 0;
    call.arguments.end();
    if (isOn)
        getLog(call).subscribe(call.dialogue.getSink(), from);
    else
        getLog(call).unsubscribe(*call.dialogue.getSink());
}

} // namespace

void addEvents(Table& table)
{
    table.add("INPut:STATe?", {[](Call& call) {
        call.answer =
            std::to_string(call.dialogue.use([](SimulatedDevice& device) { return device.getInputs(); }));
    }});
    table.add("EVENt:LAST?", {[](Call& call) { call.answer = std::to_string(getLog(call).getLast()); }});
    table.add("EVENt:DATA?", {askEvents, 2});
    table.add("EVENt:SUBScribe", {subscribe, 2});
    table.add("EVENt:ACKNowledge", {[](Call& call) { call.dialogue.getDevice().acknowledge(readNumber(call)); }, 1});
}

} // namespace KesDriver::Commands
