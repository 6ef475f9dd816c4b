#include <KesDevice/HardwareControlState.h>

#include <KesDevice/HardwareControl.h>
#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDriver/SimulatedNetwork.h>

#include <utility>

namespace KesDevice {

namespace {

constexpr std::size_t mostRetired = 4;
constexpr std::uint16_t simulatedType = 3;
constexpr std::uint32_t simulatedSerialNumber = 1;

} // namespace

HardwareControlState& HardwareControlState::get()
{
    static HardwareControlState instance;
    return instance;
}

/// What the configurations use at the end of the process is made before them, and so lives longer.
HardwareControlState::HardwareControlState()
{
    HardwareIsRunningComponent::getInstance();
    KesDriver::SimulatedNetwork::getInstance().add(
        HardwareControl::getSimulatedAddress(),
        std::make_shared<KesDriver::SimulatedKesto>(
            KesDriver::KestoIdentifer(simulatedType, simulatedSerialNumber)));
}

HardwareControlState::~HardwareControlState() = default;

HardwareManager* HardwareControlState::getCurrent() const
{
    std::lock_guard lock(_mutex);
    return _getCurrent();
}

HardwareManager* HardwareControlState::get(bool embedded) const
{
    std::lock_guard lock(_mutex);
    return embedded ? _embedded.get() : _global.get();
}

HardwareManager* HardwareControlState::_getCurrent() const
{
    return _embeddedMode && _embedded ? _embedded.get() : _global.get();
}

void HardwareControlState::offerGlobal(std::unique_ptr<HardwareManager> hardware)
{
    std::lock_guard lock(_mutex);
    if (!_global)
        _global = std::move(hardware);
}

HardwareManager* HardwareControlState::exchange(std::unique_ptr<HardwareManager> hardware, bool embedded)
{
    std::lock_guard lock(_mutex);
    auto& place = embedded ? _embedded : _global;
    place.swap(hardware);
    if (!hardware)
        return nullptr;
    _retired.push_back(std::move(hardware));
    return _retired.back().get();
}

void HardwareControlState::keepRetired(std::unique_ptr<HardwareManager> hardware)
{
    std::lock_guard lock(_mutex);
    _retired.push_back(std::move(hardware));
}

void HardwareControlState::dropRetired()
{
    // Destroyed outside the lock: that passes the signal gate.
    std::vector<std::unique_ptr<HardwareManager>> dropped;
    std::lock_guard lock(_mutex);
    while (_retired.size() > mostRetired && !_retired.front()->isBusy()) {
        dropped.push_back(std::move(_retired.front()));
        _retired.pop_front();
    }
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

std::vector<std::shared_ptr<Kesto>> HardwareControlState::leaseKestos() const
{
    std::lock_guard lock(_mutex);
    const auto* current = _getCurrent();
    return current ? current->getKestos().lease() : std::vector<std::shared_ptr<Kesto>>();
}

} // namespace KesDevice
