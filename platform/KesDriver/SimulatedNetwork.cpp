#include <KesDriver/SimulatedNetwork.h>

#include <map>
#include <mutex>
#include <utility>

namespace KesDriver {

struct SimulatedNetwork::Impl {
    mutable std::mutex mutex;
    std::map<NetAddress, std::shared_ptr<SimulatedKesto>> devices;
};

SimulatedNetwork& SimulatedNetwork::getInstance()
{
    static SimulatedNetwork instance;
    return instance;
}

SimulatedNetwork::SimulatedNetwork() : _impl(std::make_unique<Impl>()) {}

SimulatedNetwork::~SimulatedNetwork() = default;

bool SimulatedNetwork::add(const NetAddress& address, std::shared_ptr<SimulatedKesto> device)
{
    std::lock_guard lock(_impl->mutex);
    return device && _impl->devices.try_emplace(address, std::move(device)).second;
}

void SimulatedNetwork::remove(const NetAddress& address)
{
    // The device may die with its entry, which takes the time its listener needs: not under the lock.
    decltype(_impl->devices)::node_type removed;
    std::lock_guard lock(_impl->mutex);
    removed = _impl->devices.extract(address);
}

std::shared_ptr<SimulatedKesto> SimulatedNetwork::find(const NetAddress& address) const
{
    std::lock_guard lock(_impl->mutex);
    const auto found = _impl->devices.find(address);
    return found == _impl->devices.end() ? nullptr : found->second;
}

std::vector<NetAddress> SimulatedNetwork::search() const
{
    std::vector<NetAddress> addresses;
    std::lock_guard lock(_impl->mutex);
    for (const auto& [address, device] : _impl->devices)
        addresses.push_back(address);
    return addresses;
}

std::unique_ptr<IKestoLink> SimulatedNetwork::createLink(const NetAddress& address) const
{
    return SimulatedKesto::_createLink([address] { return getInstance().find(address); },
                                       KestoIdentifer().getTypeName() + ' ' + address.to_string());
}

} // namespace KesDriver
