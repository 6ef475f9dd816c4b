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
/// thread, whose default main context it works in.
class AvahiPublisher : public IServicePublisher {
public:
    /// `name` is the service's, as long as nobody else has it.
    AvahiPublisher(const std::string& name, ServiceRecord service);
    ~AvahiPublisher() override;
    AvahiPublisher(const AvahiPublisher&) = delete;
    AvahiPublisher& operator=(const AvahiPublisher&) = delete;

private:
    static void onClient(AvahiClient* client, AvahiClientState state, void* self);
    static void onGroup(AvahiEntryGroup* group, AvahiEntryGroupState state, void* self);

    void _probeFirst();
    void _connect();
    void _connectLater();
    void _publish(AvahiClient* client);
    int _tryPublish(AvahiEntryGroup& group) const;
    void _rename();
    void _report(const std::string& problem);

    const ServiceRecord _service;
    const int _interface;
    std::string _name;
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
