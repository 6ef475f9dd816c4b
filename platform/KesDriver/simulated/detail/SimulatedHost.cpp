#include <KesDriver/simulated/detail/SimulatedHost.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace KesDriver {

namespace {

/// There may be memory again then.
constexpr std::chrono::milliseconds betweenFailures{10};

/// For an observer that has stopped what happens and is not heard of any more.
constexpr std::chrono::seconds longestHold{2};

} // namespace

std::shared_ptr<SimulatedHost> SimulatedHost::start(KestoIdentity identity, const OutputLimits& limits)
{
    auto host = std::make_shared<SimulatedHost>(std::move(identity), limits);
    std::lock_guard lock(host->_mutex);
    // The thread keeps the host alive until it has ended.
    host->_worker =
        Kes::Worker("KesDevice_" + std::to_string(host->getIdentity().identifer.getSerialNumber()),
                    [host] { host->_run(); });
    return host;
}

SimulatedHost::SimulatedHost(KestoIdentity identity, const OutputLimits& limits)
    : _device(std::move(identity), limits)
{}

void SimulatedHost::shutDown()
{
    {
        std::lock_guard lock(_mutex);
        _loseConnection();
        _stopping = true;
        _changed.notify_all();
    }
    // A receiver may drop the last use of the device: then this is the device's own thread, which goes on
    // to its end by itself.
    _worker.wait();
}

bool SimulatedHost::isReachable() const
{
    std::lock_guard lock(_mutex);
    return !_stopping && _isReachable();
}

bool SimulatedHost::isConnected() const
{
    std::lock_guard lock(_mutex);
    return _connected != nullptr;
}

// The device's own thread

void SimulatedHost::_run()
{
    Lock lock(_mutex);
    _threadId = std::this_thread::get_id();
    while (!_stopping || !_startSignals.empty() || !_deliveries.empty()) {
        try {
            _step(lock);
        } catch (...) {
            _fail(lock);
        }
    }
}

void SimulatedHost::_step(Lock& lock)
{
    if (_hasFailed)
        _loseAfterFailure();
    else if (!_startSignals.empty())
        _giveStartSignal(lock);
    else if (!_deliveries.empty())
        _deliverNext(lock);
    else if (const auto now = SimulatedClock::now(); _work(now))
        _letOthersIn(lock);
    else
        _changed.wait_until(lock, _getNextWake(now));
}

/// Without memory, or when a receiver throws: the device must not be gone without a word, or whoever measures
/// waits for it. Called inside a catch block.
void SimulatedHost::_fail(Lock& lock)
{
    if (!lock.owns_lock())
        lock.lock();
    _isDelivering = false;
    const bool hadFailed = std::exchange(_hasFailed, true);
    _changed.notify_all();
    try {
        KesLog::Log::writeError("A simulated device has failed: " + Kes::getCurrentExceptionText());
    } catch (...) {
        KesLog::Log::writeError("out of memory");
    }
    if (hadFailed)
        _changed.wait_for(lock, betweenFailures);
}

/// Nothing more is told but that: who has missed a report must not take what follows for the whole.
void SimulatedHost::_loseAfterFailure()
{
    std::erase_if(_deliveries, [](const Delivery& delivery) {
        return !std::holds_alternative<ConnectionLost>(delivery.report);
    });
    _loseConnection();
    _hasFailed = false;
    _changed.notify_all();
}

void SimulatedHost::_giveStartSignal(Lock& lock)
{
    const auto [isClosed, moment] = _startSignals.front();
    _startSignals.pop_front();
    const auto startLine = _startLine;
    lock.unlock();
    if (startLine)
        startLine(isClosed, moment);
    lock.lock();
}

void SimulatedHost::_deliverNext(Lock& lock)
{
    auto delivery = std::move(_deliveries.front());
    _deliveries.pop_front();
    // Steps mean the sequence taken last; what is left of an earlier one would be taken for its.
    if (delivery.sequence != _device.getSequenceCount()) {
        if (std::holds_alternative<StepEvent>(delivery.report))
            return;
        if (auto* input = std::get_if<InputEvent>(&delivery.report))
            input->step.reset();
    }
    _isDelivering = true;
    lock.unlock();
    if (const auto receiver = delivery.connection->receiver->get())
        receiver->receive(delivery.connection->number, delivery.report);
    delivery = {};
    lock.lock();
    _isDelivering = false;
    _changed.notify_all();
}

/// A test object whose contact never rests must not lock the callers out.
void SimulatedHost::_letOthersIn(Lock& lock)
{
    lock.unlock();
    std::this_thread::yield();
    lock.lock();
}

/// What is due; false when nothing is.
bool SimulatedHost::_work(RealTime now)
{
    if (_watch())
        return true;
    if (_isHeld(now))
        return false;
    const bool hasWorked = _device.work(now, _connected != nullptr);
    if (hasWorked)
        _passOnReports();
    return hasWorked;
}

/// Loses the connection when the device has not answered for the time-out. Whoever looks at the device does
/// that too, since its thread may be with a receiver.
bool SimulatedHost::_watch()
{
    if (!_isWatched() || SimulatedClock::now() < _unreachableSince + _timeout)
        return false;
    _loseConnection();
    return true;
}

SimulatedHost::RealTime SimulatedHost::_getNextWake(RealTime now) const
{
    const auto wake = _isHeld(now) ? *_heldUntil : _device.getNextWake(now, _connected != nullptr);
    return _isWatched() ? std::min(wake, _unreachableSince + _timeout) : wake;
}

void SimulatedHost::_passOnReports() noexcept
{
    try {
        _noteFailure([this] { _takeReports(); });
    } catch (...) {
        // Noted.
    }
    _changed.notify_all();
}

void SimulatedHost::_takeReports()
{
    const auto sequence = _device.getSequenceCount();
    for (auto& report : _device.takeReports()) {
        _show(report);
        if (_connected && !_connected->isServed && _connected->state == SimulatedConnection::State::Open &&
            !_silent)
            _deliveries.push_back({_connected, std::move(report), sequence});
    }
    if (_observer)
        _observer->settle(_device);
    for (const auto& signal : _device.takeStartSignals())
        if (_startLine)
            _startSignals.push_back(signal);
}

void SimulatedHost::_show(const Report& report)
{
    if (_observer && _observer->observe(report, _device))
        _heldUntil = SimulatedClock::now() + longestHold;
}

void SimulatedHost::_loseConnection()
{
    if (!_connected)
        return;
    // A connection that never came about is not reported as lost.
    if (_connected->state == SimulatedConnection::State::Open)
        _deliveries.push_back({_connected, ConnectionLost{}, _device.getSequenceCount()});
    _connected->state = SimulatedConnection::State::Lost;
    _endConnection();
}

void SimulatedHost::_endConnection()
{
    // In this order: what throws is tried again as long as there is a connection.
    _device.release();
    _connected.reset();
    _passOnReports();
}

// The bench

void SimulatedHost::simulateConnectionLoss()
{
    std::lock_guard lock(_mutex);
    _loseConnection();
}

void SimulatedHost::setTimeout(std::chrono::milliseconds timeout)
{
    std::lock_guard lock(_mutex);
    const bool wasReachable = _isReachable();
    _timeout = timeout;
    _noteReachability(wasReachable);
}

std::chrono::milliseconds SimulatedHost::getTimeout() const
{
    std::lock_guard lock(_mutex);
    return _timeout;
}

void SimulatedHost::setSilent(bool silent)
{
    std::lock_guard lock(_mutex);
    const bool wasReachable = _isReachable();
    _silent = silent;
    _noteReachability(wasReachable);
}

void SimulatedHost::setAnswerDelay(std::chrono::milliseconds delay)
{
    std::lock_guard lock(_mutex);
    const bool wasReachable = _isReachable();
    _answerDelay = delay;
    _noteReachability(wasReachable);
}

void SimulatedHost::_noteReachability(bool wasReachable)
{
    if (wasReachable && !_isReachable())
        _unreachableSince = SimulatedClock::now();
    _changed.notify_all();
}

void SimulatedHost::setStartLine(StartLine startLine)
{
    std::lock_guard lock(_mutex);
    std::swap(_startLine, startLine);
}

// A server

void SimulatedHost::setObserver(std::shared_ptr<ISimulatedObserver> observer)
{
    std::lock_guard lock(_mutex);
    std::swap(_observer, observer);
    _heldUntil.reset();
    if (_observer)
        _observer->settle(_device);
    _changed.notify_all();
}

void SimulatedHost::goOn(const std::function<bool()>& isAllowed)
{
    std::lock_guard lock(_mutex);
    if (!isAllowed())
        return;
    _heldUntil.reset();
    _changed.notify_all();
}

} // namespace KesDriver
