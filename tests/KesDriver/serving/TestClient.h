#pragma once

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <chrono>
#include <netinet/in.h>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace KesTest {

/// Talks lines over a stream socket, which it closes. Lines that are events are set aside.
class TestClient {
public:
    explicit TestClient(int descriptor) : _descriptor(descriptor) { EXPECT_GE(descriptor, 0); }
    TestClient(const std::string& address, std::uint16_t port) : _descriptor(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_port = htons(port);
        EXPECT_EQ(inet_pton(AF_INET, address.c_str(), &place.sin_addr), 1);
        EXPECT_EQ(::connect(_descriptor, reinterpret_cast<const sockaddr*>(&place), sizeof place), 0);
    }
    ~TestClient() { close(); }
    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;

    void close()
    {
        if (_descriptor >= 0)
            ::close(std::exchange(_descriptor, -1));
    }
    /// Sends no more, but still reads.
    void endSending() const { shutdown(_descriptor, SHUT_WR); }

    void sendBytes(const std::string& bytes) const
    {
        // It blocks until all are on their way, or nobody wants them any more.
        (void)::send(_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }
    void send(const std::string& line) const { sendBytes(line + '\n'); }

    /// None at the end of the connection, or when nothing comes.
    std::optional<std::string> readLine(std::chrono::milliseconds longest = std::chrono::seconds(10))
    {
        for (;;) {
            if (const auto end = _received.find('\n'); end != std::string::npos) {
                auto line = _received.substr(0, end);
                _received.erase(0, end + 1);
                return line;
            }
            pollfd wait{_descriptor, POLLIN, 0};
            if (poll(&wait, 1, static_cast<int>(longest.count())) <= 0)
                return std::nullopt;
            char bytes[65536];
            const auto count = recv(_descriptor, bytes, sizeof bytes, 0);
            if (count <= 0) {
                _isOver = true;
                return std::nullopt;
            }
            _received.append(bytes, static_cast<std::size_t>(count));
        }
    }
    /// The answer to a message with a query, which is the next line that is no event.
    std::string ask(const std::string& message)
    {
        send(message);
        for (auto line = readLine(); line; line = readLine()) {
            if (!line->starts_with('!'))
                return *line;
            events.push_back(*line);
        }
        return _isOver ? "(over)" : "(nothing)";
    }
    /// Carries a command out and tells what became of it.
    std::string tell(const std::string& command) { return ask(command + ";:SYST:ERR?"); }
    /// The rest of the first event of the kind that comes, such as "1" for "!5,1200,SEQ,1"; the others before
    /// it are set aside.
    std::string awaitEvent(const std::string& kind)
    {
        for (;;) {
            for (; _nextEvent < events.size(); ++_nextEvent)
                if (const auto at = events[_nextEvent].find(',' + kind + ','); at != std::string::npos)
                    return events[_nextEvent++].substr(at + kind.size() + 2);
            const auto line = readLine();
            if (!line)
                return "(nothing)";
            events.push_back(*line);
        }
    }
    bool waitForEnd()
    {
        while (readLine()) {
        }
        return _isOver;
    }

    std::vector<std::string> events;

private:
    int _descriptor;
    std::string _received;
    std::size_t _nextEvent = 0;
    bool _isOver = false;
};

} // namespace KesTest
