#include <KesDriver/simulated/detail/SimulatedLoad.h>

#include <algorithm>

namespace KesDriver {

void SimulatedLoad::apply(const std::array<Phasor, 3>& currents, DeviceTime time)
{
    const auto passed = time - _time;
    for (std::size_t i = 0; i < _amperes.size(); ++i) {
        const auto used = _isHeating(i) ? _used[i] + passed : _used[i] - passed;
        _used[i] = std::clamp(used, DeviceTime(0), std::max(DeviceTime(0), _limits.overloadDuration));
        _amperes[i] = currents[i].magnitude;
    }
    _time = time;
}

SimulatedLoad::Channels SimulatedLoad::getOverloaded() const
{
    Channels channels{};
    for (std::size_t i = 0; i < _amperes.size(); ++i)
        channels[i] = _amperes[i] > 0.0 && _amperes[i] * _amperes[i] * _burden > _limits.maximumVoltAmperes;
    return channels;
}

std::optional<DeviceTime> SimulatedLoad::getOverheatTime() const
{
    std::optional<DeviceTime> first;
    for (std::size_t i = 0; i < _amperes.size(); ++i)
        if (_isHeating(i) && (!first || _getOverheatTime(i) < *first))
            first = _getOverheatTime(i);
    return first;
}

SimulatedLoad::Channels SimulatedLoad::getOverheated(DeviceTime time) const
{
    Channels channels{};
    for (std::size_t i = 0; i < _amperes.size(); ++i)
        channels[i] = _isHeating(i) && _getOverheatTime(i) <= time;
    return channels;
}

bool SimulatedLoad::_isHeating(std::size_t channel) const
{
    return _amperes[channel] > 0.0 && _amperes[channel] > _limits.continuousAmperes;
}

DeviceTime SimulatedLoad::_getOverheatTime(std::size_t channel) const
{
    return _time + std::max(DeviceTime(0), _limits.overloadDuration - _used[channel]);
}

} // namespace KesDriver
