#include <KesDriver/simulated/serving/DeviceServer.h>

#include <KesCommon/Log.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/simulated/serving/detail/SessionSet.h>

#include <mutex>
#include <utility>

namespace KesDriver {

namespace {

std::string takeMessage(GError*& error)
{
    const std::string message = error ? error->message : "";
    g_clear_error(&error);
    return message;
}

/// Null with the reason when it cannot be had.
GObjectPtr<GSocket> bind(const std::string& address, std::uint16_t port, GError*& error)
{
    const GObjectPtr<GSocketAddress> place(g_inet_socket_address_new_from_string(address.c_str(), port));
    if (!place) {
        error = g_error_new_literal(G_IO_ERROR, G_IO_ERROR_INVALID_ARGUMENT, "?");
        return nullptr;
    }
    GObjectPtr<GSocket> socket(g_socket_new(g_socket_address_get_family(place.get()), G_SOCKET_TYPE_STREAM,
                                            G_SOCKET_PROTOCOL_TCP, &error));
    // A port is to be had again at once after its last user's end.
    if (!socket || !g_socket_bind(socket.get(), place.get(), TRUE, &error) ||
        !g_socket_listen(socket.get(), &error))
        return nullptr;
    return socket;
}

std::uint16_t findPort(GSocket* socket)
{
    const GObjectPtr<GSocketAddress> address(g_socket_get_local_address(socket, nullptr));
    return address ? g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address.get())) : std::uint16_t{0};
}

} // namespace

class DeviceServer::Impl {
public:
    Impl(std::shared_ptr<SimulatedKesto> device, const std::shared_ptr<ServedDevice>& served, Log log)
        : _kesto(std::move(device)), _sessions(served, std::move(log)), _cancellable(g_cancellable_new())
    {
        served->getEvents().useFullCapacity();
    }
    ~Impl()
    {
        g_cancellable_cancel(_cancellable.get());
        _accepting.wait();
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    Kes::Result listen(const std::string& address, std::uint16_t port)
    {
        std::lock_guard lock(_mutex);
        GError* error = nullptr;
        auto socket = _listener ? nullptr : bind(address, port, error);
        if (!socket)
            return Kes::Result::failure(Kes::StringHelper::format(
                lng::Driver::get("Server.cannotListen"), address, unsigned{port}, takeMessage(error)));
        _listener = std::move(socket);
        _accepting = Kes::Worker("KesAccept", [this] { _accept(); });
        return true;
    }

    std::uint16_t getPort() const
    {
        std::lock_guard lock(_mutex);
        return _listener ? findPort(_listener.get()) : std::uint16_t{0};
    }

    SessionSet& getSessions() { return _sessions; }

private:
    void _accept()
    {
        while (!g_cancellable_is_cancelled(_cancellable.get())) {
            GObjectPtr<GSocket> socket(g_socket_accept(_listener.get(), _cancellable.get(), nullptr));
            if (!socket || !_sessions.tryAdd(std::move(socket)))
                g_usleep(10000); // There may be a file descriptor or memory again soon.
        }
    }

    const std::shared_ptr<SimulatedKesto> _kesto;
    SessionSet _sessions;
    const GObjectPtr<GCancellable> _cancellable;
    mutable std::mutex _mutex;
    GObjectPtr<GSocket> _listener;
    Kes::Worker _accepting;
};

DeviceServer::DeviceServer(std::shared_ptr<SimulatedKesto> device, Log log)
    : _impl(std::make_unique<Impl>(device, device->_served, std::move(log)))
{}

DeviceServer::~DeviceServer() = default;

Kes::Result DeviceServer::listen(const std::string& address, std::uint16_t port)
{
    return _impl->listen(address, port);
}

std::uint16_t DeviceServer::getPort() const
{
    return _impl->getPort();
}

int DeviceServer::connect()
{
    return _impl->getSessions().connect();
}

std::size_t DeviceServer::getSessionCount() const
{
    return _impl->getSessions().count();
}

} // namespace KesDriver
