// How the calls of links reach a simulated device.

#include <KesDriver/simulated/detail/SimulatedHost.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/ConnectionError.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/Refusal.h>

#include <algorithm>

namespace KesDriver {

namespace {

using State = SimulatedConnection::State;

Kes::Result failure(const char* key, const SimulatedConnection& connection)
{
    return ConnectionError::failure(Kes::StringHelper::format(lng::Driver::get(key), connection.name));
}

/// The device's own words, with what stands for the device in front.
Kes::Result refusal(const Kes::Result& result, const SimulatedConnection& connection)
{
    auto text = connection.name + ": " + Kes::ObjectErrorHelper::toDisplayString({result.getError()});
    if (const auto code = getRefusalCode(result))
        return Refusal::failure(*code, std::move(text));
    return Kes::Result::failure(std::move(text));
}

} // namespace

Kes::Result SimulatedHost::connect(const Connection& connection)
{
    Lock lock(_mutex);
    auto result = _tryConnect(lock, connection);
    if (result) {
        connection->state = State::Open;
        return result;
    }
    connection->state = State::Closed;
    if (_connected == connection)
        _endConnection();
    return result;
}

Kes::Result SimulatedHost::_tryConnect(Lock& lock, const Connection& connection)
{
    if (_stopping)
        return failure("Link.noDevice", *connection);
    if (!_waitToBeHeard(lock, connection))
        return _getFailure(connection);
    if (_connected)
        return failure("Link.inUse", *connection);
    _connected = connection;
    _unreachableSince = SimulatedClock::now();
    _device.beginConnection();
    _changed.notify_all();
    return _waitForAnswer(lock, connection) ? Kes::Result(true) : _getFailure(connection);
}

void SimulatedHost::disconnect(const Connection& connection)
{
    std::lock_guard lock(_mutex);
    connection->state = State::Closed;
    if (_connected == connection)
        _endConnection();
    std::erase_if(_deliveries, [&](const Delivery& delivery) { return delivery.connection == connection; });
    _changed.notify_all();
}

Kes::Result SimulatedHost::call(const Connection& connection, const Request& request)
{
    Lock lock(_mutex);
    return _call(lock, connection, request);
}

Kes::Result SimulatedHost::callAfterReports(const Connection& connection, const Request& request)
{
    Lock lock(_mutex);
    if (_connected == connection)
        _waitForReceiver(lock, connection);
    return _call(lock, connection, request);
}

Kes::Result SimulatedHost::_call(Lock& lock, const Connection& connection, const Request& request)
{
    if (_connected != connection || connection->state != State::Open)
        return failure("Link.notConnected", *connection);
    if (!_waitToBeHeard(lock, connection)) {
        if (_connected == connection)
            _loseConnection();
        return _getFailure(connection);
    }
    const auto result = _noteFailure([&] { return request(_device); });
    _passOnReports();
    if (!_waitForAnswer(lock, connection))
        return _getFailure(connection);
    return result ? result : refusal(result, *connection);
}

/// False when the device has not become able to hear within the time-out, or the connection has ended.
bool SimulatedHost::_waitToBeHeard(Lock& lock, const Connection& connection)
{
    if (connection->isServed)
        return !_stopping && !connection->hasEnded();
    const auto isOver = [&] { return _stopping || connection->hasEnded(); };
    _changed.wait_until(lock, SimulatedClock::now() + _timeout, [&] { return !_silent || isOver(); });
    return !_silent && !isOver();
}

/// False when the connection has ended before the answer was there.
bool SimulatedHost::_waitForAnswer(Lock& lock, const Connection& connection)
{
    if (_answerDelay.count() > 0 && !connection->isServed) {
        const bool comes = _answerDelay < _timeout;
        _changed.wait_until(lock, SimulatedClock::now() + std::min(_answerDelay, _timeout),
                            [&] { return connection->hasEnded(); });
        if (!comes && _connected == connection)
            _loseConnection();
    }
    return !connection->hasEnded();
}

/// Not for ever: a receiver that waits for the caller must not lock both up.
void SimulatedHost::_waitForReceiver(Lock& lock, const Connection& connection)
{
    constexpr std::chrono::milliseconds longestWait{100};
    if (_threadId == std::this_thread::get_id())
        return;
    _changed.wait_for(lock, longestWait,
                      [&] { return (_deliveries.empty() && !_isDelivering) || connection->hasEnded(); });
}

Kes::Result SimulatedHost::_getFailure(const Connection& connection) const
{
    return failure(connection->state == State::Closed ? "Link.notConnected" : "Link.noAnswer", *connection);
}

} // namespace KesDriver
