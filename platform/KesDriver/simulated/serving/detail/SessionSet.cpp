#include <KesDriver/simulated/serving/detail/SessionSet.h>

#include <KesCommon/Log.h>

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace KesDriver {

SessionSet::SessionSet(std::shared_ptr<ServedDevice> device, Log log)
    : _device(std::move(device)), _log(std::move(log))
{}

SessionSet::~SessionSet()
{
    const auto sessions = _takeAll();
    for (const auto& session : sessions)
        session->drop();
    for (const auto& session : sessions)
        session->waitForEnd();
}

int SessionSet::connect()
{
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return -1;
    if (GSocket* const socket = g_socket_new_from_fd(ends[0], nullptr))
        tryAdd(GObjectPtr<GSocket>(socket));
    else
        close(ends[0]);
    return ends[1];
}

std::size_t SessionSet::count() const
{
    std::lock_guard lock(_mutex);
    return static_cast<std::size_t>(std::count_if(_sessions.begin(), _sessions.end(),
                                                  [](const auto& each) { return !each->hasEnded(); }));
}

bool SessionSet::tryAdd(GObjectPtr<GSocket> socket)
{
    try {
        _add(std::move(socket));
        return true;
    } catch (const std::exception& error) {
        KesLog::Log::writeError(std::string("A connection could not be served: ") + error.what());
        return false;
    }
}

void SessionSet::_add(GObjectPtr<GSocket> socket)
{
    // Those that are over end outside the lock.
    const auto over = _removeEnded();
    std::lock_guard lock(_mutex);
    if (_sessions.size() >= mostSessions) {
        SessionSocket refused(std::move(socket));
        refused.send("This device has no session free: it has " + std::to_string(mostSessions) + ".\n");
        refused.shutDown();
        return;
    }
    _sessions.push_back(Session::start(_device, std::move(socket), _makeLog()));
}

Session::Log SessionSet::_makeLog() const
{
    if (!_log)
        return {};
    return [log = _log](SessionNumber session, bool isReceived, const std::string& line) {
        log(std::to_string(session) + (isReceived ? " > " : " < ") + line);
    };
}

SessionSet::Sessions SessionSet::_removeEnded()
{
    std::lock_guard lock(_mutex);
    const auto ended = std::stable_partition(_sessions.begin(), _sessions.end(),
                                             [](const auto& session) { return !session->hasEnded(); });
    Sessions over(std::make_move_iterator(ended), std::make_move_iterator(_sessions.end()));
    _sessions.erase(ended, _sessions.end());
    return over;
}

SessionSet::Sessions SessionSet::_takeAll()
{
    std::lock_guard lock(_mutex);
    return std::exchange(_sessions, {});
}

} // namespace KesDriver
