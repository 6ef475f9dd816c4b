#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Net/NetAddr.h>
#include <KesDriver/IKestoLink.h>

#include <functional>
#include <memory>
#include <stop_token>
#include <string>

namespace KesDriver {

using NetAddress = Kes::Net::NetAddr<4, '.'>;

/// A device that a search has found. A value.
struct FoundDevice {
    NetAddress address;
    KestoIdentifer identifer;
    bool isSimulated = false;
    /// The name of its controller; empty while it is free. The controller has chosen this text: clean it
    /// before it is shown.
    std::string owner;

    bool operator==(const FoundDevice&) const = default;
};

/// Hears of devices as they are found; must not throw.
using FoundListener = std::function<void(const FoundDevice&)>;

/// Where devices are: finds them, and makes the links to them. Given to all who need devices, and shared
/// by them. Any thread.
class KES_EXPORT IKestoNetwork {
public:
    virtual ~IKestoNetwork();

    /// Calls the listener for every device that answers, on the calling thread, in no certain order, once for
    /// each address. Blocks, a few seconds at most, so never on the GUI thread; returns soon when it is asked
    /// to stop. Fails with a sentence for the user when there may be more devices than it was able to find;
    /// being stopped is not a failure.
    virtual Kes::Result find(const FoundListener& found, std::stop_token stop) = 0;

    /// A link to whatever has the address when it connects; with nothing there it fails to connect. Returns
    /// at once.
    virtual std::unique_ptr<IKestoLink> createLink(const NetAddress& address) = 0;
};

} // namespace KesDriver
