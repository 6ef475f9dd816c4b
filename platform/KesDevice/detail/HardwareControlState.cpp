#include <KesDevice/detail/HardwareControlState.h>

#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/detail/Retirement.h>
#include <KesDriver/ProgramNetwork.h>

#include <utility>

namespace KesDevice {

HardwareControlState& HardwareControlState::get()
{
    static HardwareControlState instance;
    return instance;
}

/// What the configurations use at the end of the process is made before them, and so lives longer.
HardwareControlState::HardwareControlState()
{
    HardwareIsRunningComponent::getInstance();
    _network = KesDriver::getProgramNetwork();
}

HardwareControlState::~HardwareControlState()
{
    // The process does not end before the last output is off.
    Retirement::finish();
}

std::shared_ptr<KesDriver::IKestoNetwork> HardwareControlState::getNetwork()
{
    std::lock_guard lock(_mutex);
    return _network;
}

void HardwareControlState::setNetwork(std::shared_ptr<KesDriver::IKestoNetwork> network)
{
    std::lock_guard lock(_mutex);
    if (network)
        _network.swap(network);
}

std::shared_ptr<HardwareManager> HardwareControlState::getCurrent() const
{
    std::lock_guard lock(_mutex);
    return _embeddedMode && _embedded ? _embedded : _global;
}

void HardwareControlState::offerGlobal(std::shared_ptr<HardwareManager> hardware)
{
    std::lock_guard lock(_mutex);
    if (!_global)
        _global.swap(hardware);
}

std::shared_ptr<HardwareManager> HardwareControlState::exchange(std::shared_ptr<HardwareManager> hardware,
                                                                bool embedded)
{
    std::lock_guard lock(_mutex);
    (embedded ? _embedded : _global).swap(hardware);
    return hardware;
}

bool HardwareControlState::isEmbedded() const
{
    std::lock_guard lock(_mutex);
    return _embeddedMode;
}

void HardwareControlState::setEmbedded(bool embedded)
{
    std::lock_guard lock(_mutex);
    _embeddedMode = embedded;
}

} // namespace KesDevice
