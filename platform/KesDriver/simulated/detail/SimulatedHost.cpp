#include <KesDriver/simulated/detail/SimulatedHost.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>

#include <chrono>
#include <string>
#include <thread>
#include <utility>

namespace KesDriver {

namespace {

/// There may be memory again then.
constexpr std::chrono::milliseconds betweenFailures{10};

/// What a device that lags behind its events makes up for before a request, which must not wait for long.
constexpr int mostCatchingUp = 1000;

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
    _worker.wait();
}

// The device's own thread

void SimulatedHost::_run()
{
    Lock lock(_mutex);
    while (!_stopping || !_startSignals.empty() || !_lost.empty()) {
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
    else if (!_lost.empty())
        _tellLoss(lock);
    else if (const auto now = SimulatedClock::now(); _work(now) > 0)
        _letOthersIn(lock);
    else {
        _wakes = _getNextWake(now);
        _changed.wait_until(lock, _wakes);
    }
}

/// Without memory: the device must not be gone without a word, or whoever measures waits for it. Called
/// inside a catch block.
void SimulatedHost::_fail(Lock& lock)
{
    if (!lock.owns_lock())
        lock.lock();
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

/// Who has missed a report must not take what follows for the whole.
void SimulatedHost::_loseAfterFailure()
{
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

void SimulatedHost::_tellLoss(Lock& lock)
{
    const auto lost = _lost.front();
    lock.unlock();
    (*lost)();
    lock.lock();
    // What throws is tried again.
    _lost.pop_front();
}

/// A test object whose contact never rests must not lock the callers out.
void SimulatedHost::_letOthersIn(Lock& lock)
{
    lock.unlock();
    std::this_thread::yield();
    lock.lock();
}

/// What is due, or a part of it; returns how much.
int SimulatedHost::_work(RealTime now)
{
    if (_isHeld(now))
        return 0;
    const int count = _device.work(now, _connected != nullptr);
    if (count > 0)
        _passOnReports();
    return count;
}

/// The thread may not have come to it yet.
void SimulatedHost::_catchUp() noexcept
{
    try {
        _noteFailure([this] {
            const auto now = SimulatedClock::now();
            int left = mostCatchingUp;
            for (int count = _work(now); count > 0 && left > count; count = _work(now))
                left -= count;
        });
    } catch (...) {
        // Noted, and the thread woken. The request may be the one that switches off.
    }
}

SimulatedHost::RealTime SimulatedHost::_getNextWake(RealTime now) const
{
    return _isHeld(now) ? *_heldUntil : _device.getNextWake(now, _connected != nullptr);
}

void SimulatedHost::_passOnReports() noexcept
{
    try {
        _noteFailure([this] {
            _takeReports();
            if (_hasWork())
                _changed.notify_all();
        });
    } catch (...) {
        // Noted, and the thread woken.
    }
}

/// Whether its thread may have to do something before it wakes by itself. Most requests only ask.
bool SimulatedHost::_hasWork() const
{
    return _hasFailed || !_lost.empty() || !_startSignals.empty() ||
           _getNextWake(SimulatedClock::now()) < _wakes;
}

void SimulatedHost::_takeReports()
{
    for (const auto& report : _device.takeReports())
        if (_observer && _observer->observe(report, _device))
            _heldUntil = SimulatedClock::now() + longestHold;
    if (_observer)
        _observer->settle(_device);
    for (const auto& signal : _device.takeStartSignals())
        if (_startLine)
            _startSignals.push_back(signal);
}

void SimulatedHost::_loseConnection()
{
    if (!_connected)
        return;
    _lost.push_back(_connected);
    _endConnection();
}

void SimulatedHost::_endConnection()
{
    // In this order: what throws is tried again as long as there is a connection.
    _device.release();
    _connected.reset();
    _passOnReports();
}

// The controller

bool SimulatedHost::connect(const Connection& connection)
{
    std::lock_guard lock(_mutex);
    if (_stopping || _connected)
        return false;
    _connected = connection;
    _device.beginConnection();
    _changed.notify_all();
    return true;
}

void SimulatedHost::disconnect(const Connection& connection)
{
    std::lock_guard lock(_mutex);
    if (_connected == connection)
        _endConnection();
}

std::optional<Kes::Result> SimulatedHost::call(const Connection& connection, const Request& request)
{
    const Use use(*this);
    if (!connection || _connected != connection)
        return std::nullopt;
    return _noteFailure([&] { return request(_device); });
}

// The bench

void SimulatedHost::scheduleInput(unsigned input, bool isClosed, SimulatedDevice::Moment moment,
                                  DeviceTime delay)
{
    std::lock_guard lock(_mutex);
    _noteFailure([&] { _device.scheduleInput(input, isClosed, moment, delay); });
    _passOnReports();
}

void SimulatedHost::simulateConnectionLoss()
{
    std::lock_guard lock(_mutex);
    _loseConnection();
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
