#include <KesDriver/simulated/serving/detail/SessionSocket.h>

#include <algorithm>
#include <utility>

namespace KesDriver {

SessionSocket::SessionSocket(GObjectPtr<GSocket> socket) : _socket(std::move(socket))
{
    constexpr int noDelay = 1; // TCP_NODELAY
    constexpr int tcp = 6;
    g_socket_set_blocking(_socket.get(), TRUE);
    g_socket_set_keepalive(_socket.get(), TRUE);
    // Not every socket is one of TCP.
    g_socket_set_option(_socket.get(), tcp, noDelay, 1, nullptr);
}

std::string SessionSocket::getAddress() const
{
    const GObjectPtr<GSocketAddress> address(g_socket_get_remote_address(_socket.get(), nullptr));
    if (!address || !G_IS_INET_SOCKET_ADDRESS(address.get()))
        return localAddress;
    char* text = g_socket_connectable_to_string(G_SOCKET_CONNECTABLE(address.get()));
    const std::string result(text);
    g_free(text);
    return result;
}

/// False when the deadline has passed.
bool SessionSocket::_wait(std::optional<RealTime> deadline)
{
    gint64 microseconds = -1;
    if (deadline) {
        const auto left = *deadline - std::chrono::steady_clock::now();
        microseconds = std::max<gint64>(0, std::chrono::ceil<std::chrono::microseconds>(left).count());
    }
    GError* error = nullptr;
    const bool isReady = g_socket_condition_timed_wait(_socket.get(), G_IO_IN, microseconds, nullptr, &error);
    const bool isLate = !isReady && g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
    g_clear_error(&error);
    return !isLate;
}

SessionSocket::Received SessionSocket::receive(std::string& bytes, std::optional<RealTime> deadline)
{
    constexpr std::size_t most = 65536;
    bytes.clear();
    if (!_wait(deadline))
        return Received::Nothing;
    bytes.resize(most);
    const auto count = g_socket_receive(_socket.get(), bytes.data(), bytes.size(), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(std::max<gssize>(0, count)));
    return count > 0 ? Received::Bytes : Received::End;
}

bool SessionSocket::send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count = g_socket_send(_socket.get(), bytes.data(), bytes.size(), nullptr, nullptr);
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::size_t SessionSocket::sendSome(std::string_view bytes)
{
    const auto count =
        g_socket_send_with_blocking(_socket.get(), bytes.data(), bytes.size(), FALSE, nullptr, nullptr);
    return static_cast<std::size_t>(std::max<gssize>(0, count));
}

void SessionSocket::shutDown()
{
    g_socket_shutdown(_socket.get(), TRUE, TRUE, nullptr);
}

} // namespace KesDriver
