#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Net/NetAddr.h>
#include <KesDriver/IKestoLink.h>

#include <memory>
#include <vector>

namespace KesDriver {

using NetAddress = Kes::Net::NetAddr<4, '.'>;

/// Where devices are: finds them, and makes the links to them. Handed in to whoever needs devices, and shared
/// by them. Any thread.
class KES_EXPORT IKestoNetwork {
public:
    virtual ~IKestoNetwork();

    /// The addresses of all devices that answer, in ascending order. Blocks, a few seconds at most: never on
    /// the GUI thread.
    virtual std::vector<NetAddress> find() = 0;

    /// A link to whatever has the address when it connects; with nothing there it fails to connect. Returns
    /// at once.
    virtual std::unique_ptr<IKestoLink> createLink(const NetAddress& address) = 0;
};

} // namespace KesDriver
