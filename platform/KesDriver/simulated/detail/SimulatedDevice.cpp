#include <KesDriver/simulated/detail/SimulatedDevice.h>

#include <KesDriver/simulated/detail/SimulatedNonsense.h>

#include <algorithm>

namespace KesDriver {

SimulatedDevice::SimulatedDevice(KestoIdentity identity, const OutputLimits& limits)
    : _identity(std::move(identity)), _limits(limits), _clock(SimulatedClock::now()), _output(limits)
{}

// The bench

bool SimulatedDevice::setSpeed(double factor)
{
    // From the time that the device has reached: one that lags behind its events must not leap over them.
    if (!_clock.setSpeed(factor, _now(), SimulatedClock::now()))
        return false;
    if (_output.isArmed() && _startTime)
        _output.startArmedAt(_clock.toDevice(*_startTime));
    return true;
}

bool SimulatedDevice::connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject)
{
    if (_output.hasSequence())
        return false;
    _output.connectTestObject(std::move(testObject), _now());
    _passOnOutputReports();
    return true;
}

OutputState SimulatedDevice::getOutputs() const
{
    return _output.isWorking() ? _output.getOutputs() : OutputState{};
}

void SimulatedDevice::setBurden(double ohms)
{
    _output.setBurden(ohms, _now());
    _passOnOutputReports();
}

void SimulatedDevice::setInput(unsigned input, bool isClosed)
{
    _output.setInput(input, isClosed, _now());
    _passOnOutputReports();
}

void SimulatedDevice::scheduleInput(unsigned input, bool isClosed, Moment moment, DeviceTime delay)
{
    // Not the time now: a device that nobody has asked for its time in the meantime takes the change when it
    // came, however late it hears of it.
    _output.scheduleInput(input, isClosed, std::max(_clock.toDevice(moment) + delay, _lastTime));
}

void SimulatedDevice::raiseFault(const std::function<void(SimulatedFaults&)>& raise)
{
    raise(_faults);
    if (_faults.empty())
        return;
    _reportFaults();
    _output.stopOutputs(_now());
    _passOnOutputReports();
}

void SimulatedDevice::setFaultRepeatInterval(std::chrono::milliseconds interval)
{
    _faultRepeatInterval = interval;
    _nextFaultReport = SimulatedClock::now() + interval;
}

void SimulatedDevice::setNonsense(bool nonsense)
{
    _nonsense = nonsense;
    if (!nonsense)
        return;
    for (auto& event : SimulatedNonsense::events())
        _reports.push_back(std::move(event));
}

// Its own life

void SimulatedDevice::beginConnection()
{
    _nextFaultReport = SimulatedClock::now() + _faultRepeatInterval;
}

void SimulatedDevice::release()
{
    _output.stopWorkingMode(_now());
    _auxDCEnabled = false;
    _passOnOutputReports();
}

int SimulatedDevice::work(RealTime now, bool isConnected)
{
    if (isConnected && !_faults.empty() && now >= _nextFaultReport) {
        _reportFaults();
        return 1;
    }
    constexpr int longestTurn = 500;
    const auto time = _clock.toDevice(SimulatedClock::toMoment(now));
    int count = 0;
    while (count < longestTurn && !_output.hasReports()) {
        if (const auto next = _output.getNextTime(); !next || *next > time)
            break;
        _output.processNext();
        ++count;
    }
    _passOnOutputReports();
    return count;
}

SimulatedDevice::RealTime SimulatedDevice::getNextWake(RealTime now, bool isConnected) const
{
    auto wake = now + std::chrono::hours(1);
    if (isConnected && !_faults.empty())
        wake = std::min(wake, _nextFaultReport);
    if (const auto next = _output.getNextTime())
        wake = std::min(wake, _clock.toReal(*next, now));
    return wake;
}

DeviceTime SimulatedDevice::_now()
{
    auto time = _clock.toDevice(SimulatedClock::toMoment(SimulatedClock::now()));
    if (const auto next = _output.getNextTime())
        time = std::min(time, *next);
    _lastTime = std::max(_lastTime, time);
    return _lastTime;
}

// Reports

void SimulatedDevice::_report(Report report)
{
    _reports.push_back(_nonsense ? SimulatedNonsense::garble(std::move(report)) : std::move(report));
}

void SimulatedDevice::_reportFaults()
{
    _nextFaultReport = SimulatedClock::now() + _faultRepeatInterval;
    _report(_faults.toAvary(_identity.identifer));
}

void SimulatedDevice::_passOn(const SimulatedTrip& trip)
{
    for (std::size_t i = 0; i < trip.overloaded.size(); ++i) {
        _faults.channels[i].isOverload |= trip.overloaded[i];
        _faults.channels[i].isOverheat |= trip.overheated[i];
    }
    _reportFaults();
}

void SimulatedDevice::_passOnOutputReports()
{
    for (const auto& report : _output.takeReports()) {
        if (const auto* input = std::get_if<InputEvent>(&report))
            _report(*input);
        else if (const auto* step = std::get_if<StepEvent>(&report))
            _report(*step);
        else if (const auto* sequence = std::get_if<SequenceEvent>(&report))
            _report(*sequence);
        else if (const auto* trip = std::get_if<SimulatedTrip>(&report))
            _passOn(*trip);
        else if (const auto* signal = std::get_if<SimulatedStartSignal>(&report))
            _startSignals.emplace_back(signal->isClosed, _clock.toMoment(signal->time));
    }
}

} // namespace KesDriver
