#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Worker.h>
#include <KesDriver/IKestoLink.h>
#include <KesDriver/IKestoNetwork.h>

#include <cstdint>
#include <stop_token>

namespace KesDriver {

/// Announces a device in the local network (DNS-SD) through the system's Avahi service, while it lives, so
/// that searches find it. It does so under a host name of its own for the address; names that are taken are
/// changed.
///
/// A device at a loopback address is announced to this computer only. Without a service the log says so, and
/// the device is announced as soon as there is one, again and again. It has a thread of its own; made and
/// destroyed on any thread.
class KES_EXPORT ServiceAnnouncement {
public:
    /// Throws std::system_error when the system has no thread to give.
    ServiceAnnouncement(const NetAddress& address, std::uint16_t port, const KestoIdentity& identity,
                        bool isSimulated);
    /// The device is announced no more.
    ~ServiceAnnouncement();
    ServiceAnnouncement(const ServiceAnnouncement&) = delete;
    ServiceAnnouncement& operator=(const ServiceAnnouncement&) = delete;

private:
    std::stop_source _stop;
    Kes::Worker _worker;
};

} // namespace KesDriver
