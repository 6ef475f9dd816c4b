#pragma once

#include <KesDriver/simulated/serving/detail/Session.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace KesDriver {

/// The sessions that one server of a device has begun. Any thread.
class SessionSet {
public:
    static constexpr std::size_t mostSessions = 16;

    /// Told each line that a session receives, with ">", and each answer, with "<"; on the sessions' threads.
    using Log = std::function<void(const std::string& line)>;

    explicit SessionSet(std::shared_ptr<ServedDevice> device, Log log = {});
    /// Ends them and waits for their threads.
    ~SessionSet();
    SessionSet(const SessionSet&) = delete;
    SessionSet& operator=(const SessionSet&) = delete;

    /// Begins one; a word to the other end instead when there are too many. False when it could not be
    /// served.
    bool tryAdd(GObjectPtr<GSocket> socket);
    /// Begins one within the process: the descriptor of its other end, which is the caller's to close, or -1.
    int connect();

    /// Those that have not ended.
    std::size_t count() const;

private:
    using Sessions = std::vector<std::shared_ptr<Session>>;

    void _add(GObjectPtr<GSocket> socket);
    Session::Log _makeLog() const;
    Sessions _removeEnded();
    Sessions _takeAll();

    const std::shared_ptr<ServedDevice> _device;
    const Log _log;
    mutable std::mutex _mutex;
    Sessions _sessions;
};

} // namespace KesDriver
