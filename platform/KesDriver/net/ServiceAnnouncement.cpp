#include <KesDriver/net/ServiceAnnouncement.h>

#include <KesDriver/net/detail/AvahiLibrary.h>
#include <KesDriver/net/detail/ServiceText.h>
#include <KesDriver/net/detail/ThreadContext.h>

#include <utility>

namespace KesDriver {

ServiceAnnouncement::ServiceAnnouncement(const NetAddress& address, std::uint16_t port,
                                         const KestoIdentity& identity, bool isSimulated)
{
    ServiceRecord service{address, port, ServiceText::write(identity, isSimulated)};
    _worker = Kes::Worker("KesAnnounce", [name = ServiceText::makeName(identity),
                                          service = std::move(service), stop = _stop.get_token()] {
        ThreadContext context;
        const auto publisher = makeAvahiPublisher(name, service);
        context.run(stop, std::nullopt, [] { return false; });
    });
}

ServiceAnnouncement::~ServiceAnnouncement()
{
    _stop.request_stop();
}

} // namespace KesDriver
