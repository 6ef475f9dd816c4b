#include <KesDriver/net/StreamConnector.h>

#include <unistd.h>

namespace KesDriver {

StreamPointer makeStream(int descriptor)
{
    if (descriptor < 0)
        return nullptr;
    GSocket* const socket = g_socket_new_from_fd(descriptor, nullptr);
    if (!socket) {
        close(descriptor);
        return nullptr;
    }
    StreamPointer stream(G_IO_STREAM(g_socket_connection_factory_create_connection(socket)));
    g_object_unref(socket);
    return stream;
}

} // namespace KesDriver
