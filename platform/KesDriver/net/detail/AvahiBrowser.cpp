#include <KesDriver/net/detail/AvahiBrowser.h>

#include <KesCommon/Log.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/net/detail/AvahiBus.h>
#include <KesDriver/net/detail/ServiceText.h>

#include <avahi-common/address.h>
#include <avahi-common/defs.h>

#include <cstddef>
#include <utility>

namespace KesDriver {

namespace {

constexpr std::size_t mostServices = 1024;
constexpr std::size_t mostEntries = 32;

std::vector<std::string> toEntries(GVariant* list)
{
    std::vector<std::string> entries;
    const auto count = g_variant_n_children(list);
    for (std::size_t i = 0; i < count && i < mostEntries; ++i) {
        auto* const entry = g_variant_get_child_value(list, i);
        gsize size = 0;
        const auto* bytes = static_cast<const char*>(g_variant_get_fixed_array(entry, &size, 1));
        entries.emplace_back(bytes, bytes + size);
        g_variant_unref(entry);
    }
    return entries;
}

class AvahiBrowser : public IServiceBrowser {
public:
    void start(Listener listener) override
    {
        _listener = std::move(listener);
        _bus.open([this] { _browse(); },
                  [this](const auto&, const auto& signal, auto* content) { _onSignal(signal, content); },
                  [this](const auto& error) { _fail(error.message); });
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
        _bus.call(
            AvahiBus::serverPath, AvahiBus::serverInterface, "ServiceBrowserNew",
            g_variant_new("(iissu)", AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, ServiceText::serviceType, "local",
                          static_cast<guint32>(AVAHI_LOOKUP_USE_MULTICAST)),
            [](GVariant*) {}, [this](const GError& error) { _fail(error.message); });
    }

    void _onSignal(const std::string& signal, GVariant* content)
    {
        if (signal == "Failure")
            _fail("The browser has failed");
        if (signal == "ItemNew" && g_variant_is_of_type(content, G_VARIANT_TYPE("(iisssu)")) &&
            ++_services <= mostServices)
            _resolve(content);
    }

    /// One that cannot be asked for is as good as one that does not answer.
    void _resolve(GVariant* item)
    {
        gint32 interface = 0;
        gint32 protocol = 0;
        const char *name = nullptr, *type = nullptr, *domain = nullptr;
        g_variant_get(item, "(ii&s&s&su)", &interface, &protocol, &name, &type, &domain, nullptr);
        _bus.call(
            AvahiBus::serverPath, AvahiBus::serverInterface, "ResolveService",
            g_variant_new("(iisssiu)", interface, protocol, name, type, domain, AVAHI_PROTO_INET, 0U),
            [this](GVariant* answer) { _onResolved(answer); }, [](const GError&) {});
    }

    void _onResolved(GVariant* answer)
    {
        constexpr gsize addressPlace = 7;
        constexpr gsize portPlace = 8;
        constexpr gsize textPlace = 9;
        if (!g_variant_is_of_type(answer, G_VARIANT_TYPE("(iissssisqaayu)")))
            return;
        const char* address = nullptr;
        guint16 port = 0;
        g_variant_get_child(answer, addressPlace, "&s", &address);
        g_variant_get_child(answer, portPlace, "q", &port);
        auto* const text = g_variant_get_child_value(answer, textPlace);
        if (const auto place = NetAddress::parse(address))
            _listener({*place, port, toEntries(text)});
        g_variant_unref(text);
    }

    void _fail(const std::string& reason)
    {
        if (!std::exchange(_isFailed, true))
            KesLog::Log::writeWarn("The network cannot be searched: " + reason);
    }

    Listener _listener;
    std::size_t _services = 0;
    bool _isFailed = false;
    AvahiBus _bus;
};

} // namespace

std::unique_ptr<IServiceBrowser> makeAvahiBrowser()
{
    return std::make_unique<AvahiBrowser>();
}

} // namespace KesDriver
