#include <KesDriver/KesAvary.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>

namespace KesDriver {

namespace {

void append(std::string& text, const std::string& part)
{
    if (!text.empty())
        text += "; ";
    text += part;
}

void append(std::string& text, bool flag, const char* key, const KesAvaryChannel& channel)
{
    if (flag)
        append(text,
               Kes::StringHelper::format(lng::Driver::get(key), channel.name.empty() ? "???" : channel.name));
}

} // namespace

std::string describeFaults(const KesAvary& avary)
{
    std::string text;
    if (avary.isConnectError)
        append(text, lng::Driver::get("Fault.connection"));
    if (avary.isQuickShutdown)
        append(text, lng::Driver::get("Fault.quickShutdown"));
    for (const auto& channel : avary.channels) {
        append(text, channel.isDisconnected, "Fault.disconnected", channel);
        append(text, channel.isOverheat, "Fault.overheat", channel);
        append(text, channel.isOverload, "Fault.overload", channel);
    }
    return text;
}

} // namespace KesDriver
