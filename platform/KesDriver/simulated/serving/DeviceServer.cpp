#include <KesDriver/simulated/serving/DeviceServer.h>

#include <KesCommon/Log.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/simulated/serving/detail/Session.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

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
    Impl(std::shared_ptr<SimulatedKesto> device, std::shared_ptr<SimulatedHost> host, Log log)
        : _kesto(std::move(device)), _device(ServedDevice::create(std::move(host))), _log(std::move(log)),
          _cancellable(g_cancellable_new())
    {}
    ~Impl()
    {
        g_cancellable_cancel(_cancellable.get());
        _accepting.wait();
        const auto sessions = _takeSessions();
        for (const auto& session : sessions)
            session->drop();
        for (const auto& session : sessions)
            session->waitForEnd();
        _device->end();
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    Kes::Result listen(const std::string& address, std::uint16_t port)
    {
        std::lock_guard lock(_mutex);
        GError* error = nullptr;
        auto socket = _listener ? nullptr : bind(address, port, error);
        if (!socket)
            return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Server.cannotListen"), address,
                                                                  unsigned{port}, takeMessage(error)));
        _listener = std::move(socket);
        _accepting = Kes::Worker("KesAccept", [this] { _accept(); });
        return true;
    }

    std::uint16_t getPort() const
    {
        std::lock_guard lock(_mutex);
        return _listener ? findPort(_listener.get()) : std::uint16_t{0};
    }

    int connect()
    {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
            return -1;
        if (GSocket* const socket = g_socket_new_from_fd(ends[0], nullptr))
            _tryAdd(GObjectPtr<GSocket>(socket));
        else
            close(ends[0]);
        return ends[1];
    }

    std::size_t countSessions() const
    {
        std::lock_guard lock(_mutex);
        return static_cast<std::size_t>(
            std::count_if(_sessions.begin(), _sessions.end(), [](const auto& each) { return !each->hasEnded(); }));
    }

private:
    using Sessions = std::vector<std::shared_ptr<Session>>;

    void _accept()
    {
        while (!g_cancellable_is_cancelled(_cancellable.get())) {
            GObjectPtr<GSocket> socket(g_socket_accept(_listener.get(), _cancellable.get(), nullptr));
            if (!socket || !_tryAdd(std::move(socket)))
                g_usleep(10000); // There may be a file descriptor or memory again soon.
        }
    }

    bool _tryAdd(GObjectPtr<GSocket> socket)
    {
        try {
            _add(std::move(socket));
            return true;
        } catch (const std::exception& error) {
            KesLog::Log::writeError(std::string("A connection could not be served: ") + error.what());
            return false;
        }
    }

    void _add(GObjectPtr<GSocket> socket)
    {
        // Those that are over end outside the lock.
        const auto over = _removeEnded();
        std::lock_guard lock(_mutex);
        if (_sessions.size() >= mostSessions) {
            SessionSocket refused(std::move(socket));
            refused.send("This device has no session free: it has " + std::to_string(mostSessions) + ".\n");
            refused.shutDown();
            return;
        }
        _sessions.push_back(Session::start(_device, std::move(socket), _makeLog()));
    }

    Session::Log _makeLog() const
    {
        if (!_log)
            return {};
        return [log = _log](SessionNumber session, bool isReceived, const std::string& line) {
            log(std::to_string(session) + (isReceived ? " > " : " < ") + line);
        };
    }

    Sessions _removeEnded()
    {
        std::lock_guard lock(_mutex);
        const auto ended = std::stable_partition(_sessions.begin(), _sessions.end(),
                                                 [](const auto& session) { return !session->hasEnded(); });
        Sessions over(std::make_move_iterator(ended), std::make_move_iterator(_sessions.end()));
        _sessions.erase(ended, _sessions.end());
        return over;
    }

    Sessions _takeSessions()
    {
        std::lock_guard lock(_mutex);
        return std::exchange(_sessions, {});
    }

    const std::shared_ptr<SimulatedKesto> _kesto;
    const std::shared_ptr<ServedDevice> _device;
    const Log _log;
    const GObjectPtr<GCancellable> _cancellable;
    mutable std::mutex _mutex;
    GObjectPtr<GSocket> _listener;
    Sessions _sessions;
    Kes::Worker _accepting;
};

DeviceServer::DeviceServer(std::shared_ptr<SimulatedKesto> device, Log log)
    : _impl(std::make_unique<Impl>(device, device->_host, std::move(log)))
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
    return _impl->connect();
}

std::size_t DeviceServer::getSessionCount() const
{
    return _impl->countSessions();
}

} // namespace KesDriver
