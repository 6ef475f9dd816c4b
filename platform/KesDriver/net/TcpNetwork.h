#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoNetwork.h>

#include <cstdint>
#include <memory>

namespace KesDriver {

/// Where a device listens when nothing else is said; the port that is usual for SCPI over TCP.
inline constexpr std::uint16_t kestoPort = 5025;

/// Devices that speak the network protocol over TCP and IPv4, without a proxy. Links may outlive the
/// network. Any thread.
class KES_EXPORT TcpNetwork : public IKestoNetwork {
public:
    /// All devices are expected at the same port.
    explicit TcpNetwork(std::uint16_t port = kestoPort) : _port(port) {}

    /// Those that announce themselves, see `ServiceSearch`.
    Kes::Result find(const FoundListener& found, std::stop_token stop) override;
    /// An attempt to connect gives up after a second when nobody takes the connection.
    std::unique_ptr<IKestoLink> createLink(const NetAddress& address) override;

private:
    const std::uint16_t _port;
};

} // namespace KesDriver
