#pragma once

#include <KesDriver/IKestoNetwork.h>

#include <giomm.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <list>
#include <mutex>
#include <string>
#include <thread>

namespace KesTest {

/// A TCP socket at an address of this computer; port 0 takes a free one.
inline Glib::RefPtr<Gio::Socket> bindSocket(const KesDriver::NetAddress& address, std::uint16_t port)
{
    Gio::init();
    const auto socket =
        Gio::Socket::create(Gio::SOCKET_FAMILY_IPV4, Gio::SOCKET_TYPE_STREAM, Gio::SOCKET_PROTOCOL_TCP);
    socket->bind(Gio::InetSocketAddress::create(Gio::InetAddress::create(address.to_string()), port), true);
    return socket;
}

/// Answers at addresses of this computer, one connection each at a time, all at one port. Any thread.
class LineServer {
public:
    ~LineServer() { _over->cancel(); }

    std::uint16_t getPort() const
    {
        return Glib::RefPtr<Gio::InetSocketAddress>::cast_dynamic(_keeper->get_local_address())->get_port();
    }
    /// From now on every line at the address gets the answer, as it is; then the connection stays open.
    void serve(const KesDriver::NetAddress& address, std::string answer, std::chrono::milliseconds delay)
    {
        const auto socket = bindSocket(address, getPort());
        socket->listen();
        _threads.emplace_back([this, socket, answer = std::move(answer), delay] {
            while (!_over->is_cancelled())
                try {
                    _talk(socket->accept(_over), answer, delay);
                } catch (const Glib::Error&) {
                    // The end of a connection, or of all.
                }
        });
    }
    /// The last one that was asked, without its line end.
    std::string getLine() const
    {
        std::lock_guard lock(_mutex);
        return _line;
    }
    /// How many were asked at once.
    unsigned getMostAtATime() const { return _most; }

private:
    void _talk(const Glib::RefPtr<Gio::Socket>& connection, const std::string& answer,
               std::chrono::milliseconds delay)
    {
        std::string line;
        for (char byte = 0; connection->receive(&byte, 1, _over) == 1;) {
            if (byte != '\n') {
                line += byte;
                continue;
            }
            {
                std::lock_guard lock(_mutex);
                _line = std::exchange(line, {});
                _most = std::max<unsigned>(_most, ++_asked);
            }
            std::this_thread::sleep_for(delay);
            --_asked;
            if (!answer.empty())
                connection->send(answer.data(), answer.size(), _over);
        }
    }

    /// An address that nobody is served at keeps the port.
    const Glib::RefPtr<Gio::Socket> _keeper = bindSocket(KesDriver::NetAddress({127, 0, 0, 254}), 0);
    const Glib::RefPtr<Gio::Cancellable> _over = Gio::Cancellable::create();
    mutable std::mutex _mutex;
    std::string _line;
    std::atomic<unsigned> _asked = 0;
    std::atomic<unsigned> _most = 0;
    std::list<std::jthread> _threads;
};

} // namespace KesTest
