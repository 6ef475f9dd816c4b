#include <KesProgram/model/AvaryMessage.h>

#include <KesDriver/KestoIdentifer.h>
#include <KesProgram/text/Fault.h>
#include <KesProgram/text/Program.h>

#include <array>
#include <sstream>
#include <utility>

namespace KesProgram {

namespace {

/// A text that a table does not have: a stream that is given a null pointer writes nothing any more.
const char* orNothing(const char* text)
{
    return text ? text : "";
}

void writeChannel(std::ostream& out, const KesDriver::KesAvaryChannel& channel)
{
    const std::array<std::pair<bool, const char*>, 3> kinds{{
        {channel.isDisconnected, lng::Fault::OffPower()},
        {channel.isOverheat, lng::Fault::Overheat()},
        {channel.isOverload, lng::Fault::Overload()},
    }};
    const std::string name = channel.name.empty() ? "???" : channel.name;
    for (const auto& [isSet, text] : kinds)
        if (isSet)
            out << '\n' << name << " - " << orNothing(text);
}

} // namespace

std::string _createAvaryMessage(KesDriver::KesAvary& avary)
{
    std::ostringstream out;
    const KesDriver::KestoIdentifer identifer(avary.kestoType, avary.serialNumber);
    out << orNothing(lng::Program::get("Message.hardwareFault")) << ' ' << identifer.toDisplayString();
    if (avary.isConnectError)
        out << '\n' << orNothing(lng::Fault::AvaryConnect());
    if (avary.isQuickShutdown)
        out << '\n' << orNothing(lng::Fault::AvaryButtonOperate());
    for (const auto& channel : avary.channels)
        writeChannel(out, channel);
    return out.str();
}

} // namespace KesProgram
