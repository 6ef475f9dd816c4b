#include <KesDriver/net/late/AvahiPublisher.h>

#include <KesCommon/Log.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/net/detail/ServiceText.h>

#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <glibmm/main.h>

#include <bit>
#include <net/if.h>
#include <utility>
#include <vector>

namespace KesDriver {

namespace {

constexpr unsigned betweenConnections = 2000; // milliseconds
constexpr unsigned mostNames = 100;
constexpr std::uint8_t loopbackNetwork = 127;

/// Others could not reach a loopback address.
AvahiIfIndex chooseInterface(const NetAddress& address)
{
    const auto loopback = if_nametoindex("lo");
    return address.getBytes().front() == loopbackNetwork && loopback != 0
               ? static_cast<AvahiIfIndex>(loopback)
               : AVAHI_IF_UNSPEC;
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

struct FreeList {
    void operator()(AvahiStringList* list) const { avahi_string_list_free(list); }
};

std::unique_ptr<AvahiStringList, FreeList> makeList(const std::vector<std::string>& entries)
{
    std::vector<const char*> texts;
    for (const auto& entry : entries)
        texts.push_back(entry.c_str());
    return std::unique_ptr<AvahiStringList, FreeList>(
        avahi_string_list_new_from_array(texts.data(), static_cast<int>(texts.size())));
}

} // namespace

AvahiPublisher::AvahiPublisher(const std::string& name, ServiceRecord service)
    : _service(std::move(service)),
      _interface(chooseInterface(_service.address)),
      _name(name),
      _host(makeHostName(_service.address))
{
    _probeFirst();
}

AvahiPublisher::~AvahiPublisher()
{
    _timer.disconnect();
}

void AvahiPublisher::_probeFirst()
{
    _group = nullptr;
    _client.reset();
    _probe.emplace([this](bool answers) {
        if (answers)
            return _connect();
        _report(avahi_strerror(AVAHI_ERR_TIMEOUT));
        _connectLater();
    });
}

void AvahiPublisher::_connect()
{
    int error = 0;
    _client.reset(
        avahi_client_new(avahi_glib_poll_get(_poll.get()), AVAHI_CLIENT_NO_FAIL, &onClient, this, &error));
    if (!_client) {
        _report(avahi_strerror(error));
        _connectLater();
    }
}

void AvahiPublisher::_connectLater()
{
    _timer.disconnect();
    _timer = Glib::MainContext::get_thread_default()->signal_timeout().connect(
        [this] {
            _probeFirst();
            return false;
        },
        betweenConnections);
}

/// May be called before the client is there.
void AvahiPublisher::onClient(AvahiClient* client, AvahiClientState state, void* self)
{
    auto& publisher = *static_cast<AvahiPublisher*>(self);
    switch (state) {
    case AVAHI_CLIENT_S_RUNNING:
        publisher._publish(client);
        break;
    case AVAHI_CLIENT_S_REGISTERING:
    case AVAHI_CLIENT_S_COLLISION:
        if (publisher._group)
            avahi_entry_group_reset(publisher._group);
        break;
    case AVAHI_CLIENT_CONNECTING:
        publisher._report(avahi_strerror(AVAHI_ERR_NO_DAEMON));
        break;
    case AVAHI_CLIENT_FAILURE:
        publisher._report(avahi_strerror(avahi_client_errno(client)));
        publisher._connectLater();
        break;
    }
}

void AvahiPublisher::onGroup(AvahiEntryGroup* group, AvahiEntryGroupState state, void* self)
{
    auto& publisher = *static_cast<AvahiPublisher*>(self);
    auto* client = avahi_entry_group_get_client(group);
    switch (state) {
    case AVAHI_ENTRY_GROUP_ESTABLISHED:
        publisher._problem.clear();
        KesLog::Log::writeInfo(Kes::StringHelper::format(
            "%s is announced as \"%s\".", publisher._service.address.to_string(), publisher._name));
        break;
    case AVAHI_ENTRY_GROUP_COLLISION:
        // Nobody says which of the names it is.
        publisher._host = take(avahi_alternative_host_name(publisher._host.c_str()));
        publisher._rename();
        publisher._publish(client);
        break;
    case AVAHI_ENTRY_GROUP_FAILURE:
        publisher._report(avahi_strerror(avahi_client_errno(client)));
        break;
    case AVAHI_ENTRY_GROUP_UNCOMMITED:
    case AVAHI_ENTRY_GROUP_REGISTERING:
        break;
    }
}

void AvahiPublisher::_publish(AvahiClient* client)
{
    if (!_group)
        _group = avahi_entry_group_new(client, &onGroup, this);
    int error = _group ? AVAHI_ERR_COLLISION : avahi_client_errno(client);
    for (unsigned names = 0; error == AVAHI_ERR_COLLISION && names < mostNames; ++names) {
        error = _tryPublish(*_group);
        if (error == AVAHI_ERR_COLLISION)
            _rename();
    }
    if (error != AVAHI_OK)
        _report(avahi_strerror(error));
}

int AvahiPublisher::_tryPublish(AvahiEntryGroup& group) const
{
    AvahiAddress address{};
    address.proto = AVAHI_PROTO_INET;
    address.data.ipv4.address = std::bit_cast<std::uint32_t>(_service.address.getBytes());
    const auto host = _host + ".local";
    int error = avahi_entry_group_reset(&group);
    // The computer has a name of its own for the address.
    if (error == AVAHI_OK)
        error = avahi_entry_group_add_address(&group, _interface, AVAHI_PROTO_INET, AVAHI_PUBLISH_NO_REVERSE,
                                              host.c_str(), &address);
    if (error == AVAHI_OK)
        error = avahi_entry_group_add_service_strlst(&group, _interface, AVAHI_PROTO_INET, {}, _name.c_str(),
                                                     ServiceText::serviceType, nullptr, host.c_str(),
                                                     _service.port, makeList(_service.text).get());
    return error == AVAHI_OK ? avahi_entry_group_commit(&group) : error;
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

IServicePublisher* kesMakeAvahiPublisher(const std::string& name, const ServiceRecord& service)
{
    return new AvahiPublisher(name, service);
}

} // namespace KesDriver
