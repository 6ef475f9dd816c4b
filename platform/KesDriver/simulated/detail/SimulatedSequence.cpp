// How a simulated device runs a sequence.

#include <KesDriver/simulated/detail/SimulatedOutput.h>

namespace KesDriver {

namespace {

/// How often a ramp is put out again.
constexpr DeviceTime tickInterval = std::chrono::milliseconds(1);

} // namespace

void SimulatedOutput::runSequence(const OutputSequence& sequence, DeviceTime time)
{
    _touch(time);
    _take(sequence);
    _awaitStep();
    _beginStepsDue();
}

void SimulatedOutput::armSequence(const OutputSequence& sequence, DeviceTime time)
{
    _touch(time);
    _apply({});
    _take(sequence);
    _state = State::Armed;
}

void SimulatedOutput::startArmedAt(DeviceTime start)
{
    _startTime = start;
    _startInput.reset();
}

void SimulatedOutput::startArmedOn(unsigned input)
{
    _startTime.reset();
    _startInput = input;
}

void SimulatedOutput::_take(const OutputSequence& sequence)
{
    _sequence = sequence;
    _startTime.reset();
    _startInput.reset();
    _step = 0;
}

void SimulatedOutput::_startArmed()
{
    // Devices that start together are in phase from then on.
    _voltageWave.restart(_time);
    _awaitStep();
}

void SimulatedOutput::_awaitStep()
{
    const auto& degrees = _sequence[_step].faultDegrees;
    _stepBegin = degrees ? _voltageWave.find(_time, *degrees) : _time;
    _state = State::Waiting;
}

/// A loop, since thousands of steps may end as they begin.
void SimulatedOutput::_beginStepsDue()
{
    while (_state == State::Waiting && _stepBegin <= _time)
        _beginStep();
}

void SimulatedOutput::_beginStep()
{
    const auto& step = _sequence[_step];
    _state = State::Running;
    _stepEnd = _stepBegin + step.duration;
    _ticks = 0;
    _endWatch.begin(step.endOn, _inputs, _time);
    _reports.push_back(StepEvent{_step, _time});
    _apply(step.outputs, step.ramp.voltageHertz);
    if (_state == State::Running && _endWatch.getEnd() == _time)
        _endStep();
}

std::optional<DeviceTime> SimulatedOutput::_getNextTick() const
{
    if (_sequence[_step].ramp == OutputRamp{})
        return std::nullopt;
    return _stepBegin + (_ticks + 1) * tickInterval;
}

void SimulatedOutput::_tick()
{
    ++_ticks;
    const auto& step = _sequence[_step];
    _put(follow(step.outputs, step.ramp, _time - _stepBegin));
}

void SimulatedOutput::_endStep()
{
    // Also a ramp that an input has ended between two ticks stands at its exact value until the next step.
    if (const auto& step = _sequence[_step]; step.ramp != OutputRamp{})
        _apply(follow(step.outputs, step.ramp, _time - _stepBegin));
    if (_state != State::Running)
        return;
    _endWatch.clear();
    if (++_step == _sequence.size())
        _endSequence(true);
    else
        _awaitStep();
}

void SimulatedOutput::_endSequence(bool isComplete)
{
    _state = State::Idle;
    _endWatch.clear();
    _sequence.clear();
    _apply({});
    _reports.push_back(SequenceEvent{isComplete, _time});
}

std::optional<std::size_t> SimulatedOutput::_getStepNumber() const
{
    if (_state == State::Running)
        return _step;
    if (_state == State::Waiting && _step > 0)
        return _step - 1;
    return std::nullopt;
}

} // namespace KesDriver
