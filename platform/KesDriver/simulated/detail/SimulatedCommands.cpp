// What a simulated device does when it is asked.

#include <KesDriver/simulated/detail/SimulatedDevice.h>

#include <KesDriver/detail/Refusing.h>
#include <KesDriver/simulated/detail/SimulatedNonsense.h>

namespace KesDriver {

std::string SimulatedDevice::_describeFaults() const
{
    return describeFaults(_faults.toAvary(_identity.identifer));
}

Kes::Result SimulatedDevice::_checkFaults() const
{
    if (_faults.empty())
        return true;
    return refuse("State.fault", _describeFaults());
}

Kes::Result SimulatedDevice::_checkReadyForOutput() const
{
    if (auto result = _checkFaults(); !result)
        return result;
    if (!_output.isWorking())
        return refuse("State.outputOff");
    if (_output.hasSequence())
        return refuse(_output.isArmed() ? "State.sequenceArmed" : "State.sequenceRuns");
    return true;
}

Kes::Result SimulatedDevice::_checkSequence(const OutputSequence& sequence) const
{
    auto result = _checkReadyForOutput();
    return result ? checkSequence(sequence, _limits) : result;
}

Kes::Result SimulatedDevice::identify(KestoIdentity& identity) const
{
    identity = _nonsense ? SimulatedNonsense::identity() : _identity;
    return true;
}

Kes::Result SimulatedDevice::readState(KestoState& state) const
{
    if (_nonsense)
        state = SimulatedNonsense::state();
    else
        state = {_faults.empty(), _auxDCEnabled, _auxDCEnabled ? _auxDCVolts : 0.0, _describeFaults()};
    return true;
}

Kes::Result SimulatedDevice::readLimits(OutputLimits& limits) const
{
    limits = _nonsense ? SimulatedNonsense::limits() : _limits;
    return true;
}

Kes::Result SimulatedDevice::readTime(DeviceTime& time)
{
    time = _nonsense ? SimulatedNonsense::time() : _now();
    return true;
}

Kes::Result SimulatedDevice::setAuxDC(bool enable, double volts)
{
    if (auto result = checkAuxDC(volts); !result)
        return result;
    _auxDCEnabled = enable;
    _auxDCVolts = volts;
    return true;
}

Kes::Result SimulatedDevice::startWorkingMode()
{
    if (auto result = _checkFaults(); !result)
        return result;
    _output.startWorkingMode(_now());
    _passOnOutputReports();
    return true;
}

Kes::Result SimulatedDevice::stopWorkingMode()
{
    _output.stopWorkingMode(_now());
    _passOnOutputReports();
    return true;
}

Kes::Result SimulatedDevice::setOutputs(const OutputState& outputs)
{
    auto result = _checkReadyForOutput();
    if (result)
        result = checkOutputs(outputs, _limits);
    if (!result)
        return result;
    _output.setOutputs(outputs, _now());
    _passOnOutputReports();
    return true;
}

Kes::Result SimulatedDevice::runSequence(const OutputSequence& sequence)
{
    if (auto result = _checkSequence(sequence); !result)
        return result;
    _output.runSequence(sequence, _now());
    _passOnOutputReports();
    return true;
}

Kes::Result SimulatedDevice::stopOutputs()
{
    _output.stopOutputs(_now());
    _passOnOutputReports();
    return true;
}

Kes::Result SimulatedDevice::armSequence(const OutputSequence& sequence)
{
    if (auto result = _checkSequence(sequence); !result)
        return result;
    _startTime.reset();
    _output.armSequence(sequence, _now());
    _passOnOutputReports();
    return true;
}

Kes::Result SimulatedDevice::startArmed(const StartMoment& moment)
{
    if (!_output.isArmed())
        return refuse("State.notArmed");
    if (moment.at)
        return _startArmedAt(*moment.at);
    if (moment.input) {
        if (auto result = checkInput(*moment.input, _limits); !result)
            return result;
        _output.startArmedOn(*moment.input);
    } else {
        _output.startArmedAt(_now());
    }
    _startTime.reset();
    return true;
}

Kes::Result SimulatedDevice::_startArmedAt(CommonTime common)
{
    if (common < SimulatedClock::toMoment(SimulatedClock::now()))
        return refuse("State.startPassed");
    _startTime = common;
    _output.startArmedAt(_clock.toDevice(common));
    return true;
}

Kes::Result SimulatedDevice::readClock(ClockReading& reading) const
{
    if (_nonsense) {
        reading = SimulatedNonsense::clockReading();
        return true;
    }
    reading.common = std::chrono::floor<CommonTime>(SimulatedClock::toMoment(SimulatedClock::now()));
    reading.device = _clock.toDevice(reading.common);
    return true;
}

} // namespace KesDriver
