#include <KesDriver/SimulatedKestoImpl.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/SimulatedNonsense.h>

#include <algorithm>

namespace KesDriver {

namespace {

SimulatedClock::RealTime realNow()
{
    return std::chrono::steady_clock::now();
}

Kes::Result linkFailure(const char* key, const std::string& name)
{
    return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get(key), name));
}

} // namespace

Kes::Result SimulatedKesto::Impl::connect(const Port& port, const std::string& name)
{
    Lock lock(_mutex);
    if (_connected == port)
        return true;
    if (!_waitWhileSilent(lock, [this] { return _stopping; }))
        return linkFailure("Link.noAnswer", name);
    if (_connected)
        return linkFailure("Link.inUse", name);
    _connected = port;
    _dropDeliveries(port);
    _nextFaultReport = realNow() + _faultRepeatInterval;
    _changed.notify_all();
    if (_waitForAnswer(lock, port))
        return true;
    // A connection that never came about is not reported as lost.
    _dropDeliveries(port);
    return linkFailure("Link.noAnswer", name);
}

void SimulatedKesto::Impl::disconnect(const Port& port)
{
    std::lock_guard lock(_mutex);
    if (_connected != port)
        return;
    _endConnection();
    _dropDeliveries(port);
}

bool SimulatedKesto::Impl::isConnected(const Port& port) const
{
    std::lock_guard lock(_mutex);
    return _connected == port;
}

Kes::Result SimulatedKesto::Impl::_call(const Port& port, const std::string& name,
                                        const std::function<Kes::Result()>& body)
{
    Lock lock(_mutex);
    if (_connected != port)
        return linkFailure("Link.notConnected", name);
    if (!_waitWhileSilent(lock, [&] { return _connected != port; })) {
        if (_connected == port)
            _loseConnection();
        return linkFailure("Link.noAnswer", name);
    }
    auto result = body();
    _passOnOutputReports();
    return _waitForAnswer(lock, port) ? result : linkFailure("Link.noAnswer", name);
}

/// False when the device has not become able to hear within the time-out, or the wait was given up.
bool SimulatedKesto::Impl::_waitWhileSilent(Lock& lock, const std::function<bool()>& isGivenUp)
{
    _changed.wait_until(lock, realNow() + _timeout, [&] { return !_silent || isGivenUp(); });
    return !_silent && !isGivenUp();
}

/// False when the connection has ended before the answer was there.
bool SimulatedKesto::Impl::_waitForAnswer(Lock& lock, const Port& port)
{
    if (_answerDelay.count() == 0)
        return true;
    const auto isLost = [&] { return _connected != port; };
    const bool comes = _answerDelay < _timeout;
    _changed.wait_until(lock, realNow() + std::min(_answerDelay, _timeout), isLost);
    if (!isLost() && !comes)
        _loseConnection();
    return !isLost();
}

std::string SimulatedKesto::Impl::_describeFaults() const
{
    return describeFaults(_faults.toAvary(_identifer));
}

Kes::Result SimulatedKesto::Impl::_checkReadyForOutput() const
{
    if (!_faults.empty())
        return Kes::Result::failure(
            Kes::StringHelper::format(lng::Driver::get("State.fault"), _describeFaults()));
    if (!_output.isWorking())
        return Kes::Result::failure(lng::Driver::get("State.outputOff"));
    if (_output.isSequenceRunning())
        return Kes::Result::failure(lng::Driver::get("State.sequenceRuns"));
    return true;
}

Kes::Result SimulatedKesto::Impl::identify(const Port& port, const std::string& name,
                                           KestoIdentifer& identifer)
{
    return _call(port, name, [&] {
        identifer = _nonsense ? SimulatedNonsense::identifer() : _identifer;
        return Kes::Result(true);
    });
}

Kes::Result SimulatedKesto::Impl::readState(const Port& port, const std::string& name, KestoState& state)
{
    return _call(port, name, [&] {
        if (_nonsense)
            state = SimulatedNonsense::state();
        else
            state = {_faults.empty(), _auxDCEnabled, _auxDCEnabled ? _auxDCVolts : 0.0, _describeFaults()};
        return Kes::Result(true);
    });
}

OutputLimits SimulatedKesto::Impl::getLimits() const
{
    std::lock_guard lock(_mutex);
    return _nonsense ? SimulatedNonsense::limits() : _limits;
}

Kes::Result SimulatedKesto::Impl::setAuxDC(const Port& port, const std::string& name, bool enable,
                                           double volts)
{
    return _call(port, name, [&] {
        if (auto result = checkAuxDC(volts); !result)
            return result;
        _auxDCEnabled = enable;
        _auxDCVolts = volts;
        return Kes::Result(true);
    });
}

Kes::Result SimulatedKesto::Impl::startWorkingMode(const Port& port, const std::string& name)
{
    return _call(port, name, [&] {
        if (!_faults.empty())
            return _checkReadyForOutput();
        _output.startWorkingMode(_now());
        return Kes::Result(true);
    });
}

Kes::Result SimulatedKesto::Impl::stopWorkingMode(const Port& port, const std::string& name)
{
    return _call(port, name, [&] {
        _output.stopWorkingMode(_now());
        return Kes::Result(true);
    });
}

Kes::Result SimulatedKesto::Impl::setOutputs(const Port& port, const std::string& name,
                                             const OutputState& outputs)
{
    return _call(port, name, [&] {
        auto result = _checkReadyForOutput();
        if (result)
            result = checkOutputs(outputs, _limits);
        if (result)
            _output.setOutputs(outputs, _now());
        return result;
    });
}

Kes::Result SimulatedKesto::Impl::runSequence(const Port& port, const std::string& name,
                                              const OutputSequence& sequence)
{
    return _call(port, name, [&] {
        auto result = _checkReadyForOutput();
        if (result)
            result = checkSequence(sequence, _limits);
        if (result)
            _output.runSequence(sequence, _now());
        return result;
    });
}

Kes::Result SimulatedKesto::Impl::stopOutputs(const Port& port, const std::string& name)
{
    return _call(port, name, [&] {
        _output.stopOutputs(_now());
        return Kes::Result(true);
    });
}

DeviceTime SimulatedKesto::Impl::getTime() const
{
    std::lock_guard lock(_mutex);
    return _nonsense ? SimulatedNonsense::time() : _now();
}

} // namespace KesDriver
