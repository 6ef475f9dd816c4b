#include <KesDriver/net/detail/AvahiPublisher.h>

#include <KesCommon/Log.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/net/detail/ServiceText.h>

#include <avahi-common/address.h>
#include <avahi-common/alternative.h>
#include <avahi-common/defs.h>
#include <avahi-common/malloc.h>
#include <glibmm/main.h>

#include <net/if.h>
#include <optional>
#include <utility>
#include <vector>

namespace KesDriver {

namespace {

constexpr unsigned betweenConnections = 2000; // milliseconds
constexpr unsigned mostNames = 100;
constexpr std::uint8_t loopbackNetwork = 127;

/// Others could not reach a loopback address.
int chooseInterface(const NetAddress& address)
{
    const auto loopback = if_nametoindex("lo");
    return address.getBytes().front() == loopbackNetwork && loopback != 0 ? static_cast<int>(loopback)
                                                                          : int{AVAHI_IF_UNSPEC};
}

/// Such as "kesto-192-168-1-20". A name made of the serial number would stand for all devices of this
/// computer that have the number, for one computer may give a name several addresses.
std::string makeHostName(const NetAddress& address)
{
    return "kesto-" + address.to_string('-');
}

/// Takes over a text of the library's.
std::string take(char* text)
{
    const std::unique_ptr<char, decltype(&avahi_free)> taken(text, &avahi_free);
    return taken.get();
}

GVariant* toVariant(const std::vector<std::string>& entries)
{
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("aay"));
    for (const auto& entry : entries)
        g_variant_builder_add_value(
            &list, g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, entry.data(), entry.size(), 1));
    return g_variant_builder_end(&list);
}

bool isCollision(const GError& error)
{
    char* name = g_dbus_error_get_remote_error(&error);
    const bool isOne = g_strcmp0(name, "org.freedesktop.Avahi.CollisionError") == 0;
    g_free(name);
    return isOne;
}

/// The beginning of a signal's content, if it is that of a change of state.
std::optional<int> readState(GVariant* content)
{
    if (!g_variant_is_of_type(content, G_VARIANT_TYPE("(is)")))
        return std::nullopt;
    gint32 state = 0;
    g_variant_get_child(content, 0, "i", &state);
    return state;
}

} // namespace

AvahiPublisher::AvahiPublisher(const std::string& name, ServiceRecord service)
    : _service(std::move(service)),
      _interface(chooseInterface(_service.address)),
      _name(name),
      _host(makeHostName(_service.address))
{
    _connect();
}

AvahiPublisher::~AvahiPublisher()
{
    _timer.disconnect();
}

void AvahiPublisher::_connect()
{
    _group.clear();
    ++_attempt;
    _bus = std::make_unique<AvahiBus>();
    _bus->open(
        [this] { _makeGroup(); },
        [this](const auto& path, const auto& signal, auto* content) { _onSignal(path, signal, content); },
        [this](const GError& error) { _fail(error.message); });
}

/// Everything begins anew: nobody knows what the service has done of what has failed.
void AvahiPublisher::_fail(const std::string& problem)
{
    _report(problem);
    _group.clear();
    ++_attempt;
    _connectLater();
}

void AvahiPublisher::_connectLater()
{
    _timer.disconnect();
    _timer = Glib::MainContext::get_thread_default()->signal_timeout().connect(
        [this] {
            _connect();
            return false;
        },
        betweenConnections);
}

void AvahiPublisher::_makeGroup()
{
    _bus->call(
        AvahiBus::serverPath, AvahiBus::serverInterface, "EntryGroupNew", nullptr,
        [this](GVariant* answer) {
            const char* path = nullptr;
            if (g_variant_is_of_type(answer, G_VARIANT_TYPE("(o)"))) {
                g_variant_get(answer, "(&o)", &path);
                _group = path;
                _publish();
            }
        },
        [this](const GError& error) { _fail(error.message); });
}

void AvahiPublisher::_publish()
{
    ++_attempt;
    _callGroup("Reset", nullptr, [this] { _addAddress(); });
}

void AvahiPublisher::_addAddress()
{
    // The computer has a name of its own for the address.
    _callGroup("AddAddress",
               g_variant_new("(iiuss)", _interface, AVAHI_PROTO_INET,
                             static_cast<guint32>(AVAHI_PUBLISH_NO_REVERSE), (_host + ".local").c_str(),
                             _service.address.to_string().c_str()),
               [this] { _addService(); });
}

void AvahiPublisher::_addService()
{
    _callGroup("AddService",
               g_variant_new("(iiussssq@aay)", _interface, AVAHI_PROTO_INET, 0U, _name.c_str(),
                             ServiceText::serviceType, "", (_host + ".local").c_str(), _service.port,
                             toVariant(_service.text)),
               [this] { _callGroup("Commit", nullptr, [] {}); });
}

/// An attempt that another one has taken over from says nothing any more.
void AvahiPublisher::_callGroup(const char* method, GVariant* parameters, Next next)
{
    const auto isOld = [this, attempt = _attempt] { return attempt != _attempt; };
    _bus->call(
        _group, "org.freedesktop.Avahi.EntryGroup", method, parameters,
        [isOld, next = std::move(next)](GVariant*) {
            if (!isOld())
                next();
        },
        [this, isOld](const GError& error) {
            if (!isOld())
                _onRefused(error);
        });
}

/// On the same computer a name may be taken, too.
void AvahiPublisher::_onRefused(const GError& error)
{
    if (!isCollision(error) || ++_renamings > mostNames) {
        _fail(error.message);
        return;
    }
    _rename();
    _publish();
}

void AvahiPublisher::_onSignal(const std::string& path, const std::string& signal, GVariant* content)
{
    const auto state = signal == "StateChanged" ? readState(content) : std::nullopt;
    if (!state || _group.empty())
        return;
    if (path == _group)
        _onGroup(*state);
    else if (path == AvahiBus::serverPath)
        _onServer(*state);
}

void AvahiPublisher::_onServer(int state)
{
    if (state == AVAHI_SERVER_RUNNING) {
        _publish();
    } else if (state == AVAHI_SERVER_REGISTERING || state == AVAHI_SERVER_COLLISION) {
        ++_attempt;
        _callGroup("Reset", nullptr, [] {});
    }
}

void AvahiPublisher::_onGroup(int state)
{
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
        _problem.clear();
        _renamings = 0;
        KesLog::Log::writeInfo(
            Kes::StringHelper::format("%s is announced as \"%s\".", _service.address.to_string(), _name));
    } else if (state == AVAHI_ENTRY_GROUP_COLLISION) {
        // Nobody tells which of the names it is.
        _host = take(avahi_alternative_host_name(_host.c_str()));
        _rename();
        _publish();
    } else if (state == AVAHI_ENTRY_GROUP_FAILURE) {
        _fail("The entries cannot be registered");
    }
}

void AvahiPublisher::_rename()
{
    _name = take(avahi_alternative_service_name(_name.c_str()));
}

void AvahiPublisher::_report(const std::string& problem)
{
    if (std::exchange(_problem, problem) != problem)
        KesLog::Log::writeWarn(Kes::StringHelper::format("%s is not announced in the network: %s",
                                                         _service.address.to_string(), problem));
}

} // namespace KesDriver
