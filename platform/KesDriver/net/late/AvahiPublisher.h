#pragma once

#include <KesDriver/net/late/AvahiHandles.h>
#include <KesDriver/net/late/AvahiProbe.h>
#include <KesDriver/net/late/AvahiServices.h>

#include <avahi-client/publish.h>

#include <sigc++/connection.h>

#include <optional>
#include <string>

namespace KesDriver {

/// Keeps one service announced through the system's Avahi service, whenever there is one. Belongs to one
/// thread, whose default main context it works in; nothing is announced unless that is iterated.
///
/// It asks again after two seconds when nobody answers or the connection breaks. The log hears of a problem
/// when it comes up, not at each attempt, and of the success.
class AvahiPublisher : public IServicePublisher {
public:
    /// `name` is the service's, as long as nobody else has it; else "name #2" or the like. The service's
    /// address also gets a host name of its own, and at a loopback address only this computer hears of it.
    AvahiPublisher(const std::string& name, ServiceRecord service);
    ~AvahiPublisher() override;
    AvahiPublisher(const AvahiPublisher&) = delete;
    AvahiPublisher& operator=(const AvahiPublisher&) = delete;

private:
    static void onClient(AvahiClient* client, AvahiClientState state, void* self);
    static void onGroup(AvahiEntryGroup* group, AvahiEntryGroupState state, void* self);

    /// Lets go of the client, for whose answers nobody could wait, until the probe has had one.
    void _probeFirst();
    void _connect();
    void _connectLater();
    void _publish(AvahiClient* client);
    /// The error of the library, which tells of a name that this computer has given already.
    int _tryPublish(AvahiEntryGroup& group) const;
    void _rename();
    void _report(const std::string& problem);

    const ServiceRecord _service;
    /// Loopback for an address there, which others could not reach; else any.
    const int _interface;
    std::string _name;
    /// Without the ".local" that follows.
    std::string _host;
    /// The last one in the log; empty while the service is announced.
    std::string _problem;
    sigc::connection _timer;
    const AvahiPollHandle _poll = makeAvahiPoll();
    AvahiClientHandle _client;
    /// Belongs to the client.
    AvahiEntryGroup* _group = nullptr;
    std::optional<AvahiProbe> _probe;
};

} // namespace KesDriver
