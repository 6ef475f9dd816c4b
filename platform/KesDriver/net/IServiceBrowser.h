#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/IKestoNetwork.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace KesDriver {

/// A service as somebody in the local network announces it. A value; nothing of it can be relied upon.
struct ServiceRecord {
    NetAddress address;
    std::uint16_t port = 0;
    /// Its further entries, each as "key=value".
    std::vector<std::string> text;
};

/// Looks for the services of raw SCPI devices (`_scpi-raw._tcp`) in the local network, from `start` until it
/// dies. Belongs to one thread, whose default main context it works in.
class KES_EXPORT IServiceBrowser {
public:
    /// Called in the main context of that thread, never after the end of the browser.
    using Listener = std::function<void(const ServiceRecord&)>;

    virtual ~IServiceBrowser();

    /// The listener hears of every service that has an IPv4 address, once or several times, in any order.
    /// Nobody says when all have been told, nor when one has gone. Called once.
    virtual void start(Listener listener) = 0;

    /// Whether nothing has prevented it so far from seeing all services; else why, in a sentence for the
    /// user.
    virtual Kes::Result getResult() const = 0;
};

} // namespace KesDriver
