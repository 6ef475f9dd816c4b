#include <KesDriver/net/TcpNetwork.h>

#include <KesDriver/net/ServiceSearch.h>
#include <KesDriver/net/StreamLink.h>

#include <netinet/in.h>
#include <netinet/tcp.h>

namespace KesDriver {

namespace {

template <typename Object>
using Pointer = std::unique_ptr<Object, decltype(&g_object_unref)>;

template <typename Object>
Pointer<Object> own(Object* object)
{
    return {object, &g_object_unref};
}

/// The time-out of the attempt must not end a quiet connection.
void prepare(GSocket* socket)
{
    g_socket_set_timeout(socket, 0);
    g_socket_set_keepalive(socket, TRUE);
    g_socket_set_option(socket, IPPROTO_TCP, TCP_NODELAY, 1, nullptr);
}

StreamPointer connect(const NetAddress& address, std::uint16_t port, GCancellable* cancellable)
{
    constexpr guint longestAttempt = 1;
    const auto host = own(g_inet_address_new_from_bytes(address.getBytes().data(), G_SOCKET_FAMILY_IPV4));
    const auto target = own(g_inet_socket_address_new(host.get(), port));
    const auto client = own(g_socket_client_new());
    g_socket_client_set_enable_proxy(client.get(), FALSE);
    g_socket_client_set_timeout(client.get(), longestAttempt);
    auto* made =
        g_socket_client_connect(client.get(), G_SOCKET_CONNECTABLE(target.get()), cancellable, nullptr);
    if (!made)
        return nullptr;
    prepare(g_socket_connection_get_socket(made));
    return StreamPointer(G_IO_STREAM(made));
}

} // namespace

Kes::Result TcpNetwork::find(const FoundListener& found, std::stop_token stop)
{
    return ServiceSearch(_port).find(found, stop);
}

std::unique_ptr<IKestoLink> TcpNetwork::createLink(const NetAddress& address)
{
    auto connector = [address, port = _port](GCancellable* cancellable) {
        return KesDriver::connect(address, port, cancellable);
    };
    return std::make_unique<StreamLink>(StreamLink::Settings{std::move(connector), address.to_string()});
}

} // namespace KesDriver
