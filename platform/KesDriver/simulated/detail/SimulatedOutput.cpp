#include <KesDriver/simulated/detail/SimulatedOutput.h>

#include <algorithm>

namespace KesDriver {

namespace {

bool isAny(const SimulatedLoad::Channels& channels)
{
    return std::find(channels.begin(), channels.end(), true) != channels.end();
}

bool isEnergised(const OutputState& outputs)
{
    const auto isOn = [](const Phasor& phasor) { return phasor.magnitude != 0.0; };
    return std::any_of(outputs.currents.begin(), outputs.currents.end(), isOn) ||
           std::any_of(outputs.voltages.begin(), outputs.voltages.end(), isOn);
}

} // namespace

void SimulatedOutput::connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject, DeviceTime time)
{
    _touch(time);
    _testObject = std::move(testObject);
    _resetTestObject();
    if (_testObject && _working)
        _testObject->applyOutputs(_outputs, _time);
}

void SimulatedOutput::setBurden(double ohms, DeviceTime time)
{
    _touch(time);
    _load.setBurden(ohms);
    _checkLoad();
}

void SimulatedOutput::setInput(unsigned input, bool isClosed, DeviceTime time)
{
    _touch(time);
    _setContact(SimulatedInputs::Contact::Wire, input, isClosed);
    _beginStepsDue();
}

void SimulatedOutput::scheduleInput(unsigned input, bool isClosed, DeviceTime time)
{
    _wireChanges.emplace(time, WireChange{input, isClosed});
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

void SimulatedOutput::stopOutputs(DeviceTime time)
{
    _touch(time);
    if (hasSequence())
        _endSequence(false);
    else if (_working)
        _apply({});
}

// Events

std::optional<DeviceTime> SimulatedOutput::getNextTime() const
{
    const auto next = _findNext();
    return next ? std::optional(next->time) : std::nullopt;
}

void SimulatedOutput::processNext()
{
    const auto next = _findNext();
    if (!next)
        return;
    _touch(next->time);
    (this->*next->happen)();
    _beginStepsDue();
}

/// Of events at one time the first one offered comes first: a contact that moves with the end of a step still
/// belongs to it, and heat that lasts to the end of a step is allowed.
std::optional<SimulatedOutput::Event> SimulatedOutput::_findNext() const
{
    std::optional<Event> next;
    const auto offer = [&](std::optional<DeviceTime> time, void (SimulatedOutput::*happen)()) {
        if (time && (!next || std::max(*time, _time) < next->time))
            next = {std::max(*time, _time), happen};
    };
    if (const auto change = _testObject ? _testObject->getNextChange() : std::nullopt)
        offer(change->time, &SimulatedOutput::_acceptChange);
    if (!_wireChanges.empty())
        offer(_wireChanges.begin()->first, &SimulatedOutput::_acceptWire);
    if (_state == State::Armed)
        offer(_startTime, &SimulatedOutput::_startArmed);
    if (_state == State::Waiting)
        offer(_stepBegin, &SimulatedOutput::_beginStep);
    if (_state == State::Running) {
        offer(_endWatch.getEnd(), &SimulatedOutput::_endStep);
        offer(_stepEnd, &SimulatedOutput::_endStep);
        offer(_getNextTick(), &SimulatedOutput::_tick);
    }
    offer(_load.getOverheatTime(), &SimulatedOutput::_overheat);
    return next;
}

void SimulatedOutput::_touch(DeviceTime time)
{
    _time = std::max(_time, time);
}

// Outputs

/// From now on, until the next call, the outputs are these.
void SimulatedOutput::_put(const OutputState& outputs)
{
    const bool wasEnergised = isEnergised(_outputs);
    if (!wasEnergised && isEnergised(outputs))
        ++_energisings;
    if (wasEnergised && !isEnergised(outputs))
        _zeroTime = _time;
    const bool wasClosed = (_outputs.binaryOutputs & 1U) != 0;
    const bool isClosed = (outputs.binaryOutputs & 1U) != 0;
    if (isClosed != wasClosed)
        _reports.push_back(SimulatedStartSignal{isClosed, _time});
    _outputs = outputs;
    _load.apply(outputs.currents, _time);
    if (_testObject)
        _testObject->applyOutputs(outputs, _time);
    _checkLoad();
}

void SimulatedOutput::_apply(const OutputState& outputs, double hertzPerSecond)
{
    _voltageWave.run(_time, outputs.voltageHertz, hertzPerSecond);
    _put(outputs);
}

void SimulatedOutput::_checkLoad()
{
    if (const auto overloaded = _load.getOverloaded(); isAny(overloaded))
        _trip({overloaded, {}});
}

void SimulatedOutput::_overheat()
{
    _trip({{}, _load.getOverheated(_time)});
}

void SimulatedOutput::_trip(const SimulatedTrip& trip)
{
    _reports.push_back(trip);
    stopOutputs(_time);
}

// Inputs

void SimulatedOutput::_resetTestObject()
{
    if (_testObject)
        _testObject->reset(_time);
    for (unsigned input = 1; input <= _inputs.getCount(); ++input)
        _setContact(SimulatedInputs::Contact::TestObject, input, false);
}

void SimulatedOutput::_acceptChange()
{
    const auto change = _testObject->getNextChange();
    _testObject->acceptChange();
    if (change)
        _setContact(SimulatedInputs::Contact::TestObject, change->input, change->isClosed);
}

void SimulatedOutput::_acceptWire()
{
    const auto change = _wireChanges.begin()->second;
    _wireChanges.erase(_wireChanges.begin());
    _setContact(SimulatedInputs::Contact::Wire, change.input, change.isClosed);
}

void SimulatedOutput::_setContact(SimulatedInputs::Contact contact, unsigned input, bool isClosed)
{
    if (!_inputs.set(contact, input, isClosed))
        return;
    _reports.push_back(InputEvent{input, isClosed, _time, _getStepNumber()});
    if (_state == State::Armed && isClosed && _startInput == input)
        _startArmed();
    else if (_state == State::Running) {
        _endWatch.note(input, _inputs, _time);
        if (_endWatch.getEnd() == _time)
            _endStep();
    }
}

} // namespace KesDriver
