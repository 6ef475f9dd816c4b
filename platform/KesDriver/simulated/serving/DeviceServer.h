#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/simulated/SimulatedKesto.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace KesDriver {

/// Serves a simulated device over the network protocol (docs/protocol.md), on an address and to programs in
/// this process. At the end of the session that has control, and at the end of the server, the device
/// switches everything off. Whatever else serves the device, the links of this process included, has the same
/// controller and the same events. What it says is in the language of the process: a program that serves
/// others is in English.
///
/// Any thread.
class KES_EXPORT DeviceServer {
public:
    static constexpr std::size_t mostSessions = 16;
    static constexpr std::uint16_t defaultPort = 5025;

    /// Told each line that a session receives, with ">", and each answer, with "<"; on the sessions' threads.
    using Log = std::function<void(const std::string& line)>;

    explicit DeviceServer(std::shared_ptr<SimulatedKesto> device, Log log = {});
    /// Ends all sessions.
    ~DeviceServer();
    DeviceServer(const DeviceServer&) = delete;
    DeviceServer& operator=(const DeviceServer&) = delete;

    /// From now on takes connections at an address of this machine, such as "127.0.0.1"; port 0 takes a free
    /// one. Once at most. A failure says why.
    Kes::Result listen(const std::string& address, std::uint16_t port);
    /// 0 without `listen`.
    std::uint16_t getPort() const;

    /// A connection without a network: a stream socket's descriptor, which is the caller's to close, or -1
    /// when the system has none.
    int connect();

    std::size_t getSessionCount() const;

private:
    class Impl;
    const std::unique_ptr<Impl> _impl;
};

} // namespace KesDriver
