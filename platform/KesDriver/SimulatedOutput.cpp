#include <KesDriver/SimulatedOutput.h>

#include <algorithm>
#include <utility>

namespace KesDriver {

void SimulatedOutput::connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject, DeviceTime time)
{
    _touch(time);
    _testObject = std::move(testObject);
    _resetTestObject();
    if (_testObject && _working)
        _testObject->applyOutputs(_outputs, _time);
}

void SimulatedOutput::startWorkingMode(DeviceTime time)
{
    if (_working)
        return;
    _touch(time);
    _working = true;
    _resetTestObject();
    _apply({});
}

void SimulatedOutput::stopWorkingMode(DeviceTime time)
{
    if (!_working)
        return;
    stopOutputs(time);
    _working = false;
}

void SimulatedOutput::setOutputs(const OutputState& outputs, DeviceTime time)
{
    _touch(time);
    _apply(outputs);
}

void SimulatedOutput::runSequence(const OutputSequence& sequence, DeviceTime time)
{
    _touch(time);
    _sequence = sequence;
    _step = 0;
    _beginStep();
}

void SimulatedOutput::stopOutputs(DeviceTime time)
{
    _touch(time);
    if (isSequenceRunning())
        _endSequence(false);
    else if (_working)
        _apply({});
}

std::optional<DeviceTime> SimulatedOutput::getNextTime() const
{
    std::optional<DeviceTime> next;
    if (isSequenceRunning())
        next = _stepEnd;
    if (const auto change = _nextChange(); change && (!next || change->time < *next))
        next = change->time;
    return next;
}

void SimulatedOutput::processNext()
{
    const auto change = _nextChange();
    if (change && (!isSequenceRunning() || change->time <= _stepEnd)) {
        _processChange(*change);
    } else if (isSequenceRunning()) {
        _touch(_stepEnd);
        _endStep();
    }
}

std::vector<SimulatedOutput::Report> SimulatedOutput::takeReports()
{
    return std::exchange(_reports, {});
}

std::optional<InputEvent> SimulatedOutput::_nextChange() const
{
    auto change = _testObject ? _testObject->getNextChange() : std::nullopt;
    if (change)
        change->time = std::max(change->time, _time);
    return change;
}

void SimulatedOutput::_touch(DeviceTime time)
{
    _time = std::max(_time, time);
}

void SimulatedOutput::_apply(const OutputState& outputs)
{
    _outputs = outputs;
    if (_testObject)
        _testObject->applyOutputs(_outputs, _time);
}

void SimulatedOutput::_resetTestObject()
{
    if (_testObject)
        _testObject->reset(_time);
    for (std::size_t i = 0; i < _inputs.size(); ++i)
        _setInput(i, false);
}

void SimulatedOutput::_processChange(const InputEvent& change)
{
    _touch(change.time);
    _testObject->acceptChange();
    if (change.input < 1 || change.input > _inputs.size())
        return;
    _setInput(change.input - 1, change.isClosed);
    if (isSequenceRunning() && _isEndedByInput(_sequence[_step]))
        _endStep();
}

void SimulatedOutput::_setInput(std::size_t index, bool isClosed)
{
    if (_inputs[index] == isClosed)
        return;
    _inputs[index] = isClosed;
    _reports.push_back(InputEvent{static_cast<unsigned>(index + 1), isClosed, _time});
}

void SimulatedOutput::_beginStep()
{
    while (true) {
        const auto& step = _sequence[_step];
        _apply(step.outputs);
        _stepEnd = _time + step.duration;
        _reports.push_back(StepEvent{_step, _time});
        if (!_isEndedByInput(step))
            return;
        if (++_step == _sequence.size()) {
            _endSequence(true);
            return;
        }
    }
}

void SimulatedOutput::_endStep()
{
    if (++_step == _sequence.size())
        _endSequence(true);
    else
        _beginStep();
}

void SimulatedOutput::_endSequence(bool isComplete)
{
    _sequence.clear();
    _apply({});
    _reports.push_back(SequenceEvent{isComplete, _time});
}

bool SimulatedOutput::_isEndedByInput(const OutputStep& step) const
{
    return step.endOn && _inputs[step.endOn->input - 1] == step.endOn->isClosed;
}

} // namespace KesDriver
