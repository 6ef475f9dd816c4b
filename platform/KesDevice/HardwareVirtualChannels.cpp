#include <KesDevice/HardwareVirtualChannels.h>

#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManager.h>
#include <KesDevice/HardwareManagerText.h>

#include <array>

namespace KesDevice {

namespace {

constexpr std::size_t phases = std::tuple_size_v<decltype(KesDriver::OutputState::currents)>;

using States = std::vector<KesDriver::OutputState>;

Kes::Result put(const std::vector<KesDriver::Phasor>& channels, const char* refusal,
                std::array<KesDriver::Phasor, phases> KesDriver::OutputState::*group, States& states)
{
    const auto available = states.size() * phases;
    if (channels.size() > available)
        return Kes::Result::failure(
            Kes::StringHelper::format(lng::HardwareManager::get(refusal), available + 1, available));
    for (std::size_t i = 0; i < channels.size(); ++i)
        (states[i / phases].*group)[i % phases] = channels[i];
    return true;
}

} // namespace

std::size_t HardwareVirtualChannels::getCount() const
{
    return _hardware.getKestos().size() * phases;
}

Kes::Result HardwareVirtualChannels::split(const VirtualOutputs& outputs, States& states) const
{
    KesDriver::OutputState state;
    state.currentHertz = outputs.currentHertz;
    state.voltageHertz = outputs.voltageHertz;
    States split(_hardware.getKestos().size(), state);
    auto result =
        put(outputs.currents, "Errors.Channels.noCurrent", &KesDriver::OutputState::currents, split);
    if (result)
        result = put(outputs.voltages, "Errors.Channels.noVoltage", &KesDriver::OutputState::voltages, split);
    if (result)
        states = std::move(split);
    return result;
}

} // namespace KesDevice
