#include <KesDriver/net/late/AvahiServices.h>

#include <KesCommon/Log.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/net/detail/ServiceText.h>
#include <KesDriver/net/late/AvahiHandles.h>
#include <KesDriver/net/late/AvahiProbe.h>

#include <avahi-client/lookup.h>
#include <avahi-common/error.h>

#include <bit>
#include <cstddef>
#include <optional>
#include <utility>

namespace KesDriver {

namespace {

constexpr std::size_t mostServices = 1024;
constexpr std::size_t mostEntries = 32;

NetAddress toNetAddress(const AvahiAddress& address)
{
    // In the order of the network, which is that of the bytes.
    return NetAddress(std::bit_cast<NetAddress::Bytes>(address.data.ipv4.address));
}

std::vector<std::string> toEntries(AvahiStringList* list)
{
    std::vector<std::string> entries;
    for (; list && entries.size() < mostEntries; list = avahi_string_list_get_next(list))
        entries.emplace_back(reinterpret_cast<const char*>(avahi_string_list_get_text(list)),
                             avahi_string_list_get_size(list));
    return entries;
}

class AvahiBrowser : public IServiceBrowser {
public:
    void start(Listener listener) override
    {
        _listener = std::move(listener);
        _probe.emplace([this](bool answers) {
            if (answers)
                _browse();
            else
                _fail(AVAHI_ERR_TIMEOUT);
        });
    }

    Kes::Result getResult() const override
    {
        if (_isFailed)
            return Kes::Result::failure(lng::Driver::get("Search.noService"));
        if (_services > mostServices)
            return Kes::Result::failure(lng::Driver::get("Search.tooMany"));
        return true;
    }

private:
    void _browse()
    {
        int error = 0;
        _client.reset(avahi_client_new(avahi_glib_poll_get(_poll.get()), {}, &onClient, this, &error));
        if (!_client)
            _fail(error);
        else if (!avahi_service_browser_new(_client.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                            ServiceText::serviceType, "local", AVAHI_LOOKUP_USE_MULTICAST,
                                            &onService, this))
            _fail(avahi_client_errno(_client.get()));
    }

    static void onClient(AvahiClient* client, AvahiClientState state, void* self)
    {
        if (state == AVAHI_CLIENT_FAILURE)
            static_cast<AvahiBrowser*>(self)->_fail(avahi_client_errno(client));
    }

    static void onService(AvahiServiceBrowser* browser, AvahiIfIndex interface, AvahiProtocol protocol,
                          AvahiBrowserEvent event, const char* name, const char* type, const char* domain,
                          AvahiLookupResultFlags, void* self)
    {
        auto& browsing = *static_cast<AvahiBrowser*>(self);
        auto* client = avahi_service_browser_get_client(browser);
        if (event == AVAHI_BROWSER_FAILURE)
            browsing._fail(avahi_client_errno(client));
        // One that cannot be asked for is as good as one that does not answer.
        if (event == AVAHI_BROWSER_NEW && ++browsing._services <= mostServices)
            avahi_service_resolver_new(client, interface, protocol, name, type, domain, AVAHI_PROTO_INET, {},
                                       &onResolved, self);
    }

    static void onResolved(AvahiServiceResolver* resolver, AvahiIfIndex, AvahiProtocol,
                           AvahiResolverEvent event, const char*, const char*, const char*, const char*,
                           const AvahiAddress* address, std::uint16_t port, AvahiStringList* text,
                           AvahiLookupResultFlags, void* self)
    {
        if (event == AVAHI_RESOLVER_FOUND && address->proto == AVAHI_PROTO_INET)
            static_cast<AvahiBrowser*>(self)->_listener({toNetAddress(*address), port, toEntries(text)});
        avahi_service_resolver_free(resolver);
    }

    void _fail(int error)
    {
        if (!std::exchange(_isFailed, true))
            KesLog::Log::writeWarn(std::string("The network cannot be searched: ") + avahi_strerror(error));
    }

    Listener _listener;
    std::size_t _services = 0;
    bool _isFailed = false;
    const AvahiPollHandle _poll = makeAvahiPoll();
    AvahiClientHandle _client;
    std::optional<AvahiProbe> _probe;
};

} // namespace

IServiceBrowser* kesMakeAvahiBrowser()
{
    return new AvahiBrowser;
}

} // namespace KesDriver
