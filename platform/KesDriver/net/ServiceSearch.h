#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoNetwork.h>
#include <KesDriver/net/IServiceBrowser.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

namespace KesDriver {

/// Finds the devices that announce themselves in the local network (DNS-SD), through the system's Avahi
/// service.
///
/// Each device that announces itself as a KESTO is then asked for its identity and its controller; this
/// question takes no control. Its answer counts; without one within a second, the announcement does. Any
/// thread; several searches do not know of each other.
class KES_EXPORT ServiceSearch {
public:
    using MakeBrowser = std::function<std::unique_ptr<IServiceBrowser>()>;

    static constexpr std::chrono::milliseconds searchTime{3000};
    /// How many devices one search finds at most.
    static constexpr std::size_t mostDevices = 256;

    /// Only services at the port count.
    explicit ServiceSearch(std::uint16_t port);
    /// With services from elsewhere.
    ServiceSearch(std::uint16_t port, MakeBrowser makeBrowser,
                  std::chrono::milliseconds duration = searchTime);

    /// As `IKestoNetwork::find`. Takes the search's time, and a second more while devices do not answer.
    Kes::Result find(const FoundListener& found, std::stop_token stop) const;

private:
    const std::uint16_t _port;
    const MakeBrowser _makeBrowser;
    const std::chrono::milliseconds _duration;
};

} // namespace KesDriver
