#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Net/NetAddr.h>
#include <KesDriver/IKestoLink.h>
#include <KesDriver/SimulatedKesto.h>

#include <memory>
#include <vector>

namespace KesDriver {

using NetAddress = Kes::Net::NetAddr<4, '.'>;

/// The network of this process's simulated devices. Any thread.
class KES_EXPORT SimulatedNetwork {
public:
    static SimulatedNetwork& getInstance();

    /// Puts a device at an address; false when the address is taken.
    bool add(const NetAddress& address, std::shared_ptr<SimulatedKesto> device);
    void remove(const NetAddress& address);
    /// Null when no device has the address.
    std::shared_ptr<SimulatedKesto> find(const NetAddress& address) const;
    /// All addresses that a search finds, in ascending order.
    std::vector<NetAddress> search() const;

    /// A link to whatever has the address when it connects; with nothing there it fails to connect.
    std::unique_ptr<IKestoLink> createLink(const NetAddress& address) const;

private:
    SimulatedNetwork();
    ~SimulatedNetwork();
    struct Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDriver
