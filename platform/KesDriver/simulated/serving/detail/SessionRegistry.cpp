#include <KesDriver/simulated/serving/detail/SessionRegistry.h>

namespace KesDriver {

template <typename Action>
void SessionRegistry::_forEach(Action&& action) const
{
    for (const auto& [number, entry] : _sessions)
        if (const auto session = entry.lock())
            action(number, *session);
}

SessionNumber SessionRegistry::add(const std::shared_ptr<ISession>& session)
{
    std::lock_guard lock(_mutex);
    _sessions[++_last] = session;
    session->noteConditions(_operation, _questionable);
    session->setSilent(_isSilent);
    session->setDelay(_delay);
    return _last;
}

void SessionRegistry::remove(SessionNumber session)
{
    std::lock_guard lock(_mutex);
    _sessions.erase(session);
}

void SessionRegistry::noteConditions(Scpi::StatusRegister::Bits operation,
                                     Scpi::StatusRegister::Bits questionable)
{
    std::lock_guard lock(_mutex);
    if (operation == _operation && questionable == _questionable)
        return;
    _operation = operation;
    _questionable = questionable;
    _forEach([&](SessionNumber, ISession& session) { session.noteConditions(operation, questionable); });
}

void SessionRegistry::setSilent(bool isSilent, SessionNumber except)
{
    std::lock_guard lock(_mutex);
    _isSilent = isSilent;
    _forEach(
        [&](SessionNumber number, ISession& session) { session.setSilent(isSilent && number != except); });
}

void SessionRegistry::setDelay(std::chrono::milliseconds delay, SessionNumber except)
{
    std::lock_guard lock(_mutex);
    _delay = delay;
    _forEach([&](SessionNumber number, ISession& session) {
        session.setDelay(number == except ? std::chrono::milliseconds(0) : delay);
    });
}

bool SessionRegistry::canAnswerWithin(std::chrono::milliseconds time) const
{
    std::lock_guard lock(_mutex);
    return !_isSilent && _delay < time;
}

void SessionRegistry::dropOthers(SessionNumber except)
{
    std::lock_guard lock(_mutex);
    _forEach([&](SessionNumber number, ISession& session) {
        if (number != except)
            session.drop();
    });
}

void SessionRegistry::drop(SessionNumber session)
{
    std::lock_guard lock(_mutex);
    if (const auto found = _sessions.find(session); found != _sessions.end())
        if (const auto dropped = found->second.lock())
            dropped->drop();
}

} // namespace KesDriver
