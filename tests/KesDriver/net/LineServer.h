#pragma once

#include <KesDriver/IKestoNetwork.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <chrono>
#include <list>
#include <mutex>
#include <string>
#include <thread>

namespace KesTest {

/// Answers at addresses of this computer, one connection each at a time, all at one port. Any thread.
class LineServer {
public:
    LineServer()
    {
        // An address that nobody is served at keeps the port.
        _keeper = _bind(KesDriver::NetAddress({127, 0, 0, 254}), 0);
        sockaddr_in bound{};
        socklen_t size = sizeof bound;
        EXPECT_EQ(getsockname(_keeper, reinterpret_cast<sockaddr*>(&bound), &size), 0);
        _port = ntohs(bound.sin_port);
    }
    ~LineServer()
    {
        _threads.clear();
        close(_keeper);
    }
    LineServer(const LineServer&) = delete;
    LineServer& operator=(const LineServer&) = delete;

    std::uint16_t getPort() const { return _port; }
    /// From now on every line at the address gets the answer, as it is; then the connection stays open.
    void serve(const KesDriver::NetAddress& address, std::string answer, std::chrono::milliseconds delay)
    {
        const int socket = _bind(address, _port);
        EXPECT_EQ(listen(socket, 1), 0);
        _threads.emplace_back([this, socket, answer = std::move(answer), delay](std::stop_token stop) {
            while (_wait(stop, socket)) {
                const int connection = accept(socket, nullptr, nullptr);
                _talk(stop, connection, answer, delay);
                close(connection);
            }
            close(socket);
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
    static int _bind(const KesDriver::NetAddress& address, std::uint16_t port)
    {
        const int made = socket(AF_INET, SOCK_STREAM, 0);
        const int on = 1;
        setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_port = htons(port);
        place.sin_addr.s_addr = std::bit_cast<std::uint32_t>(address.getBytes());
        EXPECT_EQ(bind(made, reinterpret_cast<sockaddr*>(&place), sizeof place), 0) << address.to_string();
        return made;
    }
    /// False when it is asked to stop before there is something.
    static bool _wait(const std::stop_token& stop, int socket)
    {
        pollfd wanted{socket, POLLIN, 0};
        while (!stop.stop_requested())
            if (poll(&wanted, 1, 10) > 0)
                return true;
        return false;
    }
    void _talk(const std::stop_token& stop, int connection, const std::string& answer,
               std::chrono::milliseconds delay)
    {
        std::string line;
        char byte = 0;
        while (_wait(stop, connection) && recv(connection, &byte, 1, 0) == 1) {
            if (byte != '\n') {
                line += byte;
                continue;
            }
            _note(std::exchange(line, {}));
            std::this_thread::sleep_for(delay);
            --_asked;
            send(connection, answer.data(), answer.size(), MSG_NOSIGNAL);
        }
    }
    void _note(std::string line)
    {
        std::lock_guard lock(_mutex);
        _line = std::move(line);
        _most = std::max<unsigned>(_most, ++_asked);
    }

    int _keeper = -1;
    std::uint16_t _port = 0;
    mutable std::mutex _mutex;
    std::string _line;
    std::atomic<unsigned> _asked = 0;
    std::atomic<unsigned> _most = 0;
    std::list<std::jthread> _threads;
};

} // namespace KesTest
