#pragma once

#include <KesDriver/net/IServiceBrowser.h>
#include <KesDriver/net/detail/AvahiBus.h>

#include <sigc++/connection.h>

#include <functional>
#include <memory>
#include <string>

namespace KesDriver {

/// Keeps one service announced through the system's Avahi service, whenever there is one. Belongs to one
/// thread, whose default main context it works in.
class AvahiPublisher {
public:
    /// `name` is the service's, as long as nobody else has it.
    AvahiPublisher(const std::string& name, ServiceRecord service);
    ~AvahiPublisher();
    AvahiPublisher(const AvahiPublisher&) = delete;
    AvahiPublisher& operator=(const AvahiPublisher&) = delete;

private:
    using Next = std::function<void()>;

    void _connect();
    void _connectLater();
    void _makeGroup();
    void _publish();
    void _addAddress();
    void _addService();
    void _callGroup(const char* method, GVariant* parameters, Next next);
    void _onSignal(const std::string& path, const std::string& signal, GVariant* content);
    void _onServer(int state);
    void _onGroup(int state);
    void _onRefused(const GError& error);
    void _fail(const std::string& problem);
    void _rename();
    void _report(const std::string& problem);

    const ServiceRecord _service;
    const int _interface;
    std::string _name;
    std::string _host;
    /// The last one in the log; empty while the service is announced.
    std::string _problem;
    unsigned _renamings = 0;
    /// Which attempt to publish counts.
    unsigned _attempt = 0;
    sigc::connection _timer;
    std::unique_ptr<AvahiBus> _bus;
    /// The path of the entry group; empty while there is none.
    std::string _group;
};

} // namespace KesDriver
