#include <KesDriver/simulated/detail/SimulatedFaults.h>

namespace KesDriver {

namespace {

bool isFaulty(const KesAvaryChannel& channel)
{
    return channel.isDisconnected || channel.isOverheat || channel.isOverload;
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

} // namespace KesDriver
