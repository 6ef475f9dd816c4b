#include "FaultyWire.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace KesTest {

namespace {

constexpr int look = 5; // milliseconds

sockaddr_in makeAddress(const std::string& address, std::uint16_t port)
{
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(port);
    inet_pton(AF_INET, address.c_str(), &result.sin_addr);
    return result;
}

int connectTo(const std::string& address, std::uint16_t port, int flags = 0)
{
    const int file = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    const auto where = makeAddress(address, port);
    if (::connect(file, reinterpret_cast<const sockaddr*>(&where), sizeof where) == 0 || errno == EINPROGRESS)
        return file;
    ::close(file);
    return -1;
}

/// False at the end of the connection; nothing when there is nothing to read yet.
bool read(int file, std::string& bytes)
{
    char block[65536];
    const auto count = recv(file, block, sizeof block, MSG_DONTWAIT);
    if (count > 0)
        bytes.append(block, static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EAGAIN);
}

/// What does not fit now stays for later.
void send(int file, std::string& bytes, std::size_t packet)
{
    for (;;) {
        const auto count =
            ::send(file, bytes.data(), std::min(packet, bytes.size()), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count <= 0)
            return;
        bytes.erase(0, static_cast<std::size_t>(count));
    }
}

/// Takes the whole lines.
std::string changeLines(std::string& bytes, const FaultyWire::Change& change)
{
    if (!change)
        return std::exchange(bytes, {});
    std::string changed;
    for (auto end = bytes.find('\n'); end != std::string::npos; end = bytes.find('\n')) {
        for (const auto& line : change(bytes.substr(0, end)))
            changed += line + '\n';
        bytes.erase(0, end + 1);
    }
    return changed;
}

} // namespace

FaultyWire::FaultyWire(const std::string& address, const std::string& device, std::uint16_t port)
    : _address(address), _remote(device), _port(port)
{
    _listen();
    _thread = std::thread([this] { _run(); });
}

FaultyWire::~FaultyWire()
{
    _isEnding = true;
    _thread.join();
    _end();
    _close();
    for (const int file : {_program, _device})
        ::close(file);
}

void FaultyWire::_run()
{
    while (!_isEnding) {
        pollfd waiting[3];
        {
            std::lock_guard lock(_mutex);
            const bool takes = _isConnected && !_isClogged;
            waiting[0] = {_fillers.empty() ? _listener : -1, POLLIN, 0};
            waiting[1] = {takes ? _program : -1, POLLIN, 0};
            waiting[2] = {takes && !_due ? _device : -1, POLLIN, 0};
        }
        poll(waiting, std::size(waiting), look);
        std::lock_guard lock(_mutex);
        if ((waiting[0].revents & POLLIN) && waiting[0].fd == _listener && _fillers.empty())
            _accept();
        else if (_isConnected && !_isClogged)
            _pass();
    }
}

void FaultyWire::_listen()
{
    _listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int yes = 1;
    setsockopt(_listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    const auto where = makeAddress(_address, _port);
    if (bind(_listener, reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 ||
        listen(_listener, 0) != 0)
        throw std::runtime_error("cannot listen at " + _address);
}

void FaultyWire::_close()
{
    for (const int file : std::exchange(_fillers, {}))
        ::close(file);
    if (const int listener = std::exchange(_listener, -1); listener >= 0)
        ::close(listener);
}

void FaultyWire::_accept()
{
    const int program = accept4(_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (program < 0)
        return;
    _end();
    for (const int file : {_program, _device})
        ::close(file);
    _program = program;
    _device = connectTo(_remote, _port);
    _isConnected = true;
    const int yes = 1;
    for (const int file : {_program, _device})
        setsockopt(file, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
}

/// Both ends see it; what was on its way is lost.
void FaultyWire::_end()
{
    if (!std::exchange(_isConnected, false))
        return;
    shutdown(_program, SHUT_RDWR);
    shutdown(_device, SHUT_RDWR);
    for (auto* bytes : {&_toDevice, &_fromDevice, &_toProgram})
        bytes->clear();
    _due.reset();
}

void FaultyWire::_pass()
{
    if (!read(_program, _toDevice) || (!_due && !read(_device, _fromDevice))) {
        _end();
        return;
    }
    if (_isFrozen)
        return;
    const auto now = std::chrono::steady_clock::now();
    if (!_fromDevice.empty() && !_due)
        _due = now + _delay.load();
    if (_due && now >= *_due) {
        _due.reset();
        _toProgram += changeLines(_fromDevice, _change);
    }
    constexpr std::size_t whole = 65536;
    send(_device, _toDevice, whole);
    send(_program, _toProgram, _isCutUp ? 1 : whole);
}

void FaultyWire::mend()
{
    std::lock_guard lock(_mutex);
    _isFrozen = false;
    _isClogged = false;
    _isCutUp = false;
    _delay = std::chrono::milliseconds(0);
    _change = nullptr;
    if (_fillers.empty() && _listener >= 0)
        return;
    _close();
    _listen();
}

void FaultyWire::refuse()
{
    std::lock_guard lock(_mutex);
    _close();
}

void FaultyWire::ignore()
{
    std::lock_guard lock(_mutex);
    // A listener with a full queue drops what asks to be connected.
    for (int i = 0; i < 4; ++i)
        _fillers.push_back(connectTo(_address, _port, SOCK_NONBLOCK));
}

void FaultyWire::drop()
{
    std::lock_guard lock(_mutex);
    _end();
}

void FaultyWire::change(Change change)
{
    std::lock_guard lock(_mutex);
    _change = std::move(change);
}

void FaultyWire::insert(const std::string& bytes)
{
    std::lock_guard lock(_mutex);
    if (_isConnected)
        ::send(_program, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

} // namespace KesTest
