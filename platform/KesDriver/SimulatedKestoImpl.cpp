#include <KesDriver/SimulatedKestoImpl.h>

#include <KesCommon/ThreadHelper.h>
#include <KesDriver/SimulatedNonsense.h>

#include <algorithm>
#include <utility>

namespace KesDriver {

namespace {

SimulatedClock::RealTime realNow()
{
    return std::chrono::steady_clock::now();
}

} // namespace

SimulatedKesto::Impl::Impl(KestoIdentifer identifer, OutputLimits limits)
    : _identifer(identifer), _limits(limits), _clock(realNow()), _output(limits.binaryInputs)
{}

void SimulatedKesto::Impl::start(const std::shared_ptr<Impl>& self)
{
    _thread = std::thread([self] { self->_run(); });
}

void SimulatedKesto::Impl::shutDown()
{
    {
        std::lock_guard lock(_mutex);
        _loseConnection();
        _stopping = true;
        _changed.notify_all();
    }
    // A listener may drop the last use of the device: then this is the device's own thread.
    if (_thread.get_id() == std::this_thread::get_id())
        _thread.detach();
    else
        Kes::ThreadHelper::join(_thread);
}

// The device's own thread

void SimulatedKesto::Impl::_run()
{
    Kes::ThreadHelper::setCurrentThreadName("KesDevice_" + std::to_string(_identifer.getSerialNumber()));
    Lock lock(_mutex);
    while (true) {
        if (!_deliveries.empty())
            _deliverNext(lock);
        else if (_stopping)
            return;
        else if (const auto now = realNow(); _doDueWork(now))
            _letOthersIn(lock);
        else
            _changed.wait_until(lock, _getNextWake(now));
    }
}

void SimulatedKesto::Impl::_deliverNext(Lock& lock)
{
    auto delivery = std::move(_deliveries.front());
    _deliveries.pop_front();
    lock.unlock();
    delivery.port->deliver(delivery.report);
    delivery = {};
    lock.lock();
}

/// A test object whose contact never rests must not lock the callers out.
void SimulatedKesto::Impl::_letOthersIn(Lock& lock)
{
    lock.unlock();
    std::this_thread::yield();
    lock.lock();
}

/// One thing that is due; false when nothing is.
bool SimulatedKesto::Impl::_doDueWork(RealTime now)
{
    if (_connected && _silent && now >= _silentSince + _timeout) {
        _loseConnection();
        return true;
    }
    if (_connected && !_faults.empty() && now >= _nextFaultReport) {
        _reportFaults();
        return true;
    }
    if (const auto next = _output.getNextTime(); next && _clock.toDevice(now) >= *next) {
        _output.processNext();
        _passOnOutputReports();
        return true;
    }
    return false;
}

SimulatedClock::RealTime SimulatedKesto::Impl::_getNextWake(RealTime now) const
{
    auto wake = now + std::chrono::hours(1);
    if (_connected && _silent)
        wake = std::min(wake, _silentSince + _timeout);
    if (_connected && !_faults.empty())
        wake = std::min(wake, _nextFaultReport);
    if (const auto next = _output.getNextTime())
        wake = std::min(wake, _clock.toReal(*next, now));
    return wake;
}

// Time and reports

DeviceTime SimulatedKesto::Impl::_now() const
{
    auto time = _clock.toDevice(realNow());
    if (const auto next = _output.getNextTime())
        time = std::min(time, *next);
    _lastTime = std::max(_lastTime, time);
    return _lastTime;
}

void SimulatedKesto::Impl::_report(SimulatedPort::Report report)
{
    if (!_connected || _silent)
        return;
    _deliveries.push_back({_connected, std::move(report)});
    _changed.notify_all();
}

void SimulatedKesto::Impl::_reportFaults()
{
    _nextFaultReport = realNow() + _faultRepeatInterval;
    auto avary = _nonsense ? SimulatedNonsense::avary() : _faults.toAvary(_identifer);
    _report([avary = std::move(avary)](IKestoLinkListener& listener) { listener.onAvary(avary); });
}

void SimulatedKesto::Impl::_passOnOutputReports()
{
    for (auto& report : _output.takeReports()) {
        if (_nonsense)
            report = SimulatedNonsense::garble(std::move(report));
        if (const auto* input = std::get_if<InputEvent>(&report))
            _report([event = *input](IKestoLinkListener& listener) { listener.onInput(event); });
        else if (const auto* step = std::get_if<StepEvent>(&report))
            _report([event = *step](IKestoLinkListener& listener) { listener.onStep(event); });
        else if (const auto* sequence = std::get_if<SequenceEvent>(&report))
            _report(
                [event = *sequence](IKestoLinkListener& listener) { listener.onSequenceFinished(event); });
    }
    _changed.notify_all();
}

void SimulatedKesto::Impl::_loseConnection()
{
    if (!_connected)
        return;
    _deliveries.push_back({_connected, [](IKestoLinkListener& listener) { listener.onConnectionLost(); }});
    _endConnection();
}

void SimulatedKesto::Impl::_endConnection()
{
    _output.stopWorkingMode(_now());
    _output.takeReports();
    _auxDCEnabled = false;
    _connected.reset();
    _changed.notify_all();
}

void SimulatedKesto::Impl::_dropDeliveries(const Port& port)
{
    std::erase_if(_deliveries, [&](const Delivery& delivery) { return delivery.port == port; });
}

// The bench

bool SimulatedKesto::Impl::setSpeed(double factor)
{
    std::lock_guard lock(_mutex);
    _changed.notify_all();
    return _clock.setSpeed(factor, realNow());
}

bool SimulatedKesto::Impl::connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject)
{
    std::lock_guard lock(_mutex);
    if (_output.isSequenceRunning())
        return false;
    _output.connectTestObject(std::move(testObject), _now());
    _passOnOutputReports();
    return true;
}

OutputState SimulatedKesto::Impl::getOutputs() const
{
    std::lock_guard lock(_mutex);
    return _output.isWorking() ? _output.getOutputs() : OutputState{};
}

void SimulatedKesto::Impl::raiseFault(const std::function<void(SimulatedFaults&)>& raise)
{
    std::lock_guard lock(_mutex);
    raise(_faults);
    if (_faults.empty())
        return;
    _reportFaults();
    _output.stopOutputs(_now());
    _passOnOutputReports();
}

void SimulatedKesto::Impl::clearFaults()
{
    std::lock_guard lock(_mutex);
    _faults = {};
}

void SimulatedKesto::Impl::simulateConnectionLoss()
{
    std::lock_guard lock(_mutex);
    _loseConnection();
}

void SimulatedKesto::Impl::setTimeout(std::chrono::milliseconds timeout)
{
    std::lock_guard lock(_mutex);
    _timeout = timeout;
    _changed.notify_all();
}

void SimulatedKesto::Impl::setFaultRepeatInterval(std::chrono::milliseconds interval)
{
    std::lock_guard lock(_mutex);
    _faultRepeatInterval = interval;
    _nextFaultReport = realNow() + interval;
    _changed.notify_all();
}

void SimulatedKesto::Impl::setSilent(bool silent)
{
    std::lock_guard lock(_mutex);
    if (silent && !_silent)
        _silentSince = realNow();
    _silent = silent;
    _changed.notify_all();
}

void SimulatedKesto::Impl::setAnswerDelay(std::chrono::milliseconds delay)
{
    std::lock_guard lock(_mutex);
    _answerDelay = delay;
}

void SimulatedKesto::Impl::setNonsense(bool nonsense)
{
    std::lock_guard lock(_mutex);
    _nonsense = nonsense;
    if (nonsense)
        for (auto& event : SimulatedNonsense::events())
            _report(std::move(event));
}

} // namespace KesDriver
