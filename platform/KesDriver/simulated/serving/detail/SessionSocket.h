#pragma once

#include <gio/gio.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace KesDriver {

template <typename T>
struct GObjectDeleter {
    void operator()(T* object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectDeleter<T>>;

/// A connected stream socket. One thread receives while another one sends; `sendSome` while nobody sends;
/// `shutDown` on any.
class SessionSocket {
public:
    using RealTime = std::chrono::steady_clock::time_point;
    enum class Received { Bytes, Nothing, End };

    explicit SessionSocket(GObjectPtr<GSocket> socket);

    /// Of a program that has none: one inside this machine.
    static constexpr const char* localAddress = "local";

    /// The other end, such as "127.0.0.1:40312", or `localAddress`.
    std::string getAddress() const;

    /// Waits for bytes, until the deadline if there is one. They replace those in `bytes`.
    Received receive(std::string& bytes, std::optional<RealTime> deadline);
    /// False when the connection has ended.
    bool send(std::string_view bytes);
    /// Sends what goes without waiting; says how many bytes that were. None when the connection has ended.
    std::size_t sendSome(std::string_view bytes);
    /// What waits in `receive` and `send` returns, and nothing can be sent or received any more.
    void shutDown();

private:
    bool _wait(std::optional<RealTime> deadline);

    const GObjectPtr<GSocket> _socket;
};

} // namespace KesDriver
