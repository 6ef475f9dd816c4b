#include <KesDriver/SimulatedFaults.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>

namespace KesDriver {

namespace {

bool isFaulty(const KesAvaryChannel& channel)
{
    return channel.isDisconnected || channel.isOverheat || channel.isOverload;
}

void append(std::string& text, const std::string& part)
{
    if (!text.empty())
        text += "; ";
    text += part;
}

} // namespace

bool SimulatedFaults::empty() const
{
    for (const auto& channel : channels)
        if (isFaulty(channel))
            return false;
    return !isQuickShutdown;
}

KesAvary SimulatedFaults::toAvary(const KestoIdentifer& identifer) const
{
    KesAvary avary;
    avary.kestoType = identifer.getType();
    avary.serialNumber = identifer.getSerialNumber();
    avary.isQuickShutdown = isQuickShutdown;
    for (unsigned i = 0; i < channelCount; ++i) {
        if (!isFaulty(channels[i]))
            continue;
        avary.channels.push_back(channels[i]);
        avary.channels.back().name = getChannelName(i);
    }
    return avary;
}

std::string SimulatedFaults::toText() const
{
    std::string text;
    if (isQuickShutdown)
        append(text, lng::Driver::get("Fault.quickShutdown"));
    for (unsigned i = 0; i < channelCount; ++i) {
        const auto add = [&](bool flag, const char* key) {
            if (flag)
                append(text, Kes::StringHelper::format(lng::Driver::get(key), getChannelName(i)));
        };
        add(channels[i].isDisconnected, "Fault.disconnected");
        add(channels[i].isOverheat, "Fault.overheat");
        add(channels[i].isOverload, "Fault.overload");
    }
    return text;
}

} // namespace KesDriver
