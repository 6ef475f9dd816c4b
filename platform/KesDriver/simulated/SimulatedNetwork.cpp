#include <KesDriver/simulated/SimulatedNetwork.h>

#include <KesDriver/EmbeddedNetwork.h>
#include <KesDriver/net/StreamLink.h>
#include <KesDriver/simulated/detail/SimulatedHost.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace KesDriver {

namespace {

using Host = std::shared_ptr<SimulatedHost>;

constexpr unsigned startLineInput = 8;
constexpr DeviceTime pressDuration = std::chrono::milliseconds(100);

/// The contact and the wire to a device take a time that differs from device to device and stays the same.
DeviceTime getDelay(const SimulatedHost& host)
{
    constexpr unsigned longestDelay = 100;
    return DeviceTime(host.getIdentity().identifer.getSerialNumber() * 37U % (longestDelay + 1));
}

} // namespace

struct SimulatedNetwork::Impl {
    using Devices = std::map<NetAddress, std::shared_ptr<SimulatedKesto>>;

    mutable std::mutex mutex;
    Devices devices;
    /// The one that drives the start line.
    std::weak_ptr<SimulatedHost> first;

    std::shared_ptr<SimulatedKesto> get(const NetAddress& address) const
    {
        std::lock_guard lock(mutex);
        const auto found = devices.find(address);
        return found == devices.end() ? nullptr : found->second;
    }
    Devices getDevices() const
    {
        std::lock_guard lock(mutex);
        return devices;
    }
    std::vector<Host> getHosts() const
    {
        std::vector<Host> hosts;
        std::lock_guard lock(mutex);
        for (const auto& [address, device] : devices)
            hosts.push_back(device->_host);
        return hosts;
    }
    /// The one so far.
    Host setFirst(const Host& host)
    {
        std::lock_guard lock(mutex);
        return std::exchange(first, host).lock();
    }
    void driveStartLine(const Host& driver, bool isClosed, SimulatedDevice::Moment moment) const
    {
        const auto hosts = getHosts();
        if (std::find(hosts.begin(), hosts.end(), driver) == hosts.end())
            return;
        for (const auto& host : hosts)
            if (host != driver)
                host->scheduleInput(startLineInput, isClosed, moment, getDelay(*host));
    }
};

std::shared_ptr<SimulatedNetwork> SimulatedNetwork::getEmbedded()
{
    static const auto network = [] {
        auto made = std::make_shared<SimulatedNetwork>();
        made->add(embeddedAddress, std::make_shared<SimulatedKesto>(KestoIdentifer(3, 1)));
        return made;
    }();
    return network;
}

SimulatedNetwork::SimulatedNetwork() : _impl(std::make_shared<Impl>()) {}

SimulatedNetwork::~SimulatedNetwork() = default;

bool SimulatedNetwork::add(const NetAddress& address, std::shared_ptr<SimulatedKesto> device)
{
    std::lock_guard lock(_impl->mutex);
    return device && _impl->devices.try_emplace(address, std::move(device)).second;
}

void SimulatedNetwork::remove(const NetAddress& address)
{
    // The device may die with its entry, which takes the time its receiver needs: not under the lock.
    decltype(_impl->devices)::node_type removed;
    std::lock_guard lock(_impl->mutex);
    removed = _impl->devices.extract(address);
}

std::shared_ptr<SimulatedKesto> SimulatedNetwork::get(const NetAddress& address) const
{
    return _impl->get(address);
}

Kes::Result SimulatedNetwork::find(const FoundListener& found, std::stop_token stop)
{
    for (const auto& [address, device] : _impl->getDevices()) {
        if (stop.stop_requested())
            break;
        if (device->_isReachable())
            found({address, device->getIdentifer(), true, device->_getOwner()});
    }
    return true;
}

std::unique_ptr<IKestoLink> SimulatedNetwork::createLink(const NetAddress& address)
{
    const auto find = [address, impl = std::weak_ptr(_impl)] {
        const auto network = impl.lock();
        return network ? network->get(address) : nullptr;
    };
    StreamLink::Settings settings{[find](GCancellable*) {
                                      const auto device = find();
                                      return device ? makeStream(device->_connect()) : nullptr;
                                  },
                                  address.to_string()};
    settings.getTimeout = [find, usual = settings.getTimeout] {
        const auto device = find();
        return device ? device->_timeout.load() : usual();
    };
    settings.formerEnd = std::chrono::milliseconds(30);
    settings.isInLockstep = true;
    return std::make_unique<StreamLink>(std::move(settings));
}

void SimulatedNetwork::closeStartContact(unsigned input)
{
    // A little ahead, so that every device hears of it before it happens.
    const auto moment = SimulatedClock::toMoment(SimulatedClock::now()) + std::chrono::milliseconds(1);
    for (const auto& host : _impl->getHosts()) {
        host->scheduleInput(input, true, moment, getDelay(*host));
        host->scheduleInput(input, false, moment, getDelay(*host) + pressDuration);
    }
}

bool SimulatedNetwork::wireStartLine(const NetAddress& first)
{
    const auto device = _impl->get(first);
    if (!device)
        return false;
    const auto& host = device->_host;
    if (const auto previous = _impl->setFirst(host))
        previous->setStartLine({});
    host->setStartLine(
        [impl = std::weak_ptr(_impl), driver = std::weak_ptr(host)](bool isClosed, auto moment) {
            if (const auto network = impl.lock())
                network->driveStartLine(driver.lock(), isClosed, moment);
        });
    return true;
}

} // namespace KesDriver
