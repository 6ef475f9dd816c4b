#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace KesTest {

/// A network cable between a program and a device that can be cut, slow or disturbed: listens at one address,
/// and passes on what comes to and from another one. One program at a time. Any thread.
class FaultyWire {
public:
    /// What becomes of a line on its way from the device to the program, without its end.
    using Change = std::function<std::vector<std::string>(const std::string& line)>;

    FaultyWire(const std::string& address, const std::string& device, std::uint16_t port);
    ~FaultyWire();
    FaultyWire(const FaultyWire&) = delete;
    FaultyWire& operator=(const FaultyWire&) = delete;

    /// Everything as it was at first.
    void mend();

    /// New connections are refused.
    void refuse();
    /// New connections are not answered.
    void ignore();
    /// Both ends see the end of the connection.
    void drop();
    /// Nothing passes any more, and neither end is told.
    void freeze() { _isFrozen = true; }
    /// Takes nothing any more: what is sent fills the buffers.
    void clog() { _isClogged = true; }
    /// What comes from the device takes so long.
    void delay(std::chrono::milliseconds time) { _delay = time; }
    /// One packet for each byte.
    void cutUp() { _isCutUp = true; }
    void change(Change change);
    /// Bytes from nowhere, on their way to the program.
    void insert(const std::string& bytes);

private:
    // The thread; all but the first with the mutex.
    void _run();
    void _listen();
    void _close();
    void _accept();
    void _end();
    void _pass();

    const std::string _address;
    const std::string _remote;
    const std::uint16_t _port;
    std::atomic<bool> _isFrozen{false};
    std::atomic<bool> _isClogged{false};
    std::atomic<bool> _isCutUp{false};
    std::atomic<std::chrono::milliseconds> _delay{std::chrono::milliseconds(0)};
    std::atomic<bool> _isEnding{false};
    std::mutex _mutex;
    Change _change;
    int _listener = -1;
    /// Fill the queue of a listener that is not to answer.
    std::vector<int> _fillers;
    // The connection from both sides, open until the next one, and what is on its way.
    bool _isConnected = false;
    int _program = -1;
    int _device = -1;
    std::string _toDevice, _fromDevice, _toProgram;
    /// Set while something from the device waits.
    std::optional<std::chrono::steady_clock::time_point> _due;
    std::thread _thread;
};

} // namespace KesTest
