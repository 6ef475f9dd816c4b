#include "FaultyWire.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
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

/// Nothing when there is nothing to read yet.
bool read(int file, std::string& bytes)
{
    pollfd waiting{file, POLLIN, 0};
    if (poll(&waiting, 1, look) <= 0)
        return true;
    char block[65536];
    const auto count = recv(file, block, sizeof block, 0);
    if (count > 0)
        bytes.append(block, static_cast<std::size_t>(count));
    return count > 0;
}

bool write(int file, const std::string& bytes)
{
    return bytes.empty() || send(file, bytes.data(), bytes.size(), MSG_NOSIGNAL) > 0;
}

} // namespace

/// A connection from both sides.
class FaultyWire::Pair {
public:
    Pair(FaultyWire& wire, int program, int device) : _wire(wire), _program(program), _device(device)
    {
        const int yes = 1;
        for (const int file : {_program, _device})
            setsockopt(file, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        _down = std::thread([this] { _passDown(); });
        _up = std::thread([this] { _passUp(); });
    }
    ~Pair()
    {
        end();
        _down.join();
        _up.join();
        ::close(_program);
        ::close(_device);
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    void end()
    {
        _isEnding = true;
        shutdown(_program, SHUT_RDWR);
        shutdown(_device, SHUT_RDWR);
    }
    void insert(const std::string& bytes) { write(_program, bytes); }

private:
    bool _read(int file, std::string& bytes) const
    {
        if (!_wire._isClogged)
            return read(file, bytes);
        std::this_thread::sleep_for(std::chrono::milliseconds(look));
        return true;
    }

    void _passUp()
    {
        std::string bytes;
        while (!_isEnding && _read(_program, bytes)) {
            if (!_wire._isFrozen && !_wire._isClogged)
                write(_device, std::exchange(bytes, {}));
        }
        end();
    }

    void _passDown()
    {
        std::string bytes;
        while (!_isEnding && _read(_device, bytes)) {
            if (bytes.empty() || _wire._isFrozen || _wire._isClogged)
                continue;
            if (const auto delay = _wire._delay.load(); delay.count() > 0)
                std::this_thread::sleep_for(delay);
            if (!_isEnding)
                _send(_changeLines(bytes));
        }
        end();
    }

    /// Takes the whole lines.
    std::string _changeLines(std::string& bytes)
    {
        Change change;
        {
            std::lock_guard lock(_wire._mutex);
            change = _wire._change;
        }
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

    void _send(const std::string& bytes)
    {
        if (!_wire._isCutUp) {
            write(_program, bytes);
            return;
        }
        for (const char byte : bytes)
            write(_program, std::string(1, byte));
    }

    FaultyWire& _wire;
    const int _program;
    const int _device;
    std::atomic<bool> _isEnding{false};
    std::thread _down;
    std::thread _up;
};

FaultyWire::FaultyWire(const std::string& address, const std::string& device, std::uint16_t port)
    : _address(address), _device(device), _port(port)
{
    _listen();
    _thread = std::thread([this] {
        while (!_isEnding)
            _accept();
    });
}

FaultyWire::~FaultyWire()
{
    _isEnding = true;
    _thread.join();
    mend();
    drop();
    _close();
}

void FaultyWire::_listen()
{
    _listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
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
    int listener = -1;
    {
        std::lock_guard lock(_mutex);
        if (_fillers.empty())
            listener = _listener;
    }
    pollfd waiting{listener, POLLIN, 0};
    if (poll(&waiting, 1, look) <= 0 || !(waiting.revents & POLLIN))
        return;
    std::shared_ptr<Pair> former;
    std::lock_guard lock(_mutex);
    if (listener != _listener || !_fillers.empty())
        return;
    const int program = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    const int device = connectTo(_device, _port);
    if (device >= 0 && program >= 0)
        former = std::exchange(_pair, std::make_shared<Pair>(*this, program, device));
    else if (program >= 0)
        ::close(program);
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
    std::shared_ptr<Pair> pair;
    {
        std::lock_guard lock(_mutex);
        pair = std::move(_pair);
    }
    if (pair)
        pair->end();
}

void FaultyWire::change(Change change)
{
    std::lock_guard lock(_mutex);
    _change = std::move(change);
}

void FaultyWire::insert(const std::string& bytes)
{
    std::shared_ptr<Pair> pair;
    {
        std::lock_guard lock(_mutex);
        pair = _pair;
    }
    if (pair)
        pair->insert(bytes);
}

} // namespace KesTest
