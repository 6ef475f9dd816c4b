#include <KesDevice/HardwareVirtualChannels.h>

#include <KesDevice/HardwareManager.h>
#include <KesDriver/OutputCheck.h>

namespace KesDevice {

std::vector<std::string> HardwareVirtualChannels::getNames() const
{
    std::vector<std::string> names;
    const auto count = _hardware.getKestos().size();
    for (std::size_t device = 1; device <= count; ++device)
        for (unsigned channel = 0; channel < KesDriver::channelCount; ++channel)
            names.push_back(KesDriver::getChannelName(channel) +
                            (device > 1 ? std::to_string(device) : std::string()));
    return names;
}

} // namespace KesDevice
