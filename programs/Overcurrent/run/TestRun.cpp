#include <Overcurrent/run/TestRun.h>

#include <Overcurrent/data/OperateCurve.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>

namespace Overcurrent {

namespace {

using KesMeasure::RunControl;
using KesMeasure::SequenceRecord;
using KesMeasure::SequenceRecorder;

using KesDriver::DeviceTime;
using KesDriver::InputCondition;
using KesDriver::InputEvent;
using KesDriver::OutputSequence;
using Seconds = std::chrono::duration<double>;

/// How long a relay may take to close its start contact at the upper end of the drop-off ramp.
constexpr double startTime = 1.0;

DeviceTime toDeviceTime(double seconds)
{
    return DeviceTime(std::llround(seconds * 1e6));
}

/// The first change of the input to that state from the given step on.
std::optional<InputEvent> firstChange(const SequenceRecord& record, InputCondition condition,
                                      std::size_t fromStep = 0)
{
    const auto found =
        std::find_if(record.inputs.begin(), record.inputs.end(), [&](const InputEvent& change) {
            return *change.step >= fromStep && *change.step < record.steps.size() &&
                   change.input == condition.input && change.isClosed == condition.isClosed;
        });
    return found == record.inputs.end() ? std::nullopt : std::optional(*found);
}

/// Between the beginning of a step and the end of the sequence.
DeviceTime timeFrom(const SequenceRecord& record, std::size_t step)
{
    return record.end->time - record.steps[step];
}

/// No change came: either the steps ran their whole time, or the contact was in the wanted state at once.
MeasureState stateWithoutChange(const SequenceRecord& record, std::size_t firstStep, double shortestSeconds)
{
    return Seconds(timeFrom(record, firstStep)).count() < shortestSeconds * 0.5 ? MeasureState::ContactEarly
                                                                                : MeasureState::NoOperation;
}

} // namespace

TestRun::TestRun(const RelaySettings& settings, const TestPlan& plan, KesDevice::Kesto& kesto,
                 KesMeasure::RunControl& control, ITestRunListener& listener)
    : _settings(settings), _plan(plan), _listener(listener), _recorder(kesto, control)
{
    for (const double multiple : plan.multiples)
        _wholeWeight += _pointWeight(multiple);
    _wholeWeight += _rampWeight(plan.pickUp) + _rampWeight(plan.dropOff);
}

RunEnd TestRun::execute()
{
    for (const auto measure : {&TestRun::_measurePoints, &TestRun::_measurePickUp, &TestRun::_measureDropOff})
        if (const auto end = (this->*measure)(); end != RunEnd::Complete)
            return end;
    return RunEnd::Complete;
}

RunEnd TestRun::_measurePoints()
{
    std::size_t number = 0;
    for (const double multiple : _plan.multiples) {
        _announce({RunPhase::Kind::Point, ++number, _plan.multiples.size(), multiple});
        auto fault = _step(multiple, _plan.timeout);
        fault.endOn = InputCondition{tripInput, true};
        if (const auto end = _run({_step(0.0, _plan.pause), fault}); end != RunEnd::Complete)
            return end;
        PointResult result;
        result.multiple = multiple;
        if (!_evaluatePoint(result))
            return _fail(lng::Overcurrent::get("Run.nonsense"));
        _doneWeight += _pointWeight(multiple);
        _listener.onPoint(result);
    }
    return RunEnd::Complete;
}

/// False when the device's times make no sense.
bool TestRun::_evaluatePoint(PointResult& result)
{
    const auto record = _recorder.getRecord();
    if (record.steps.size() != 2)
        return false;
    const auto trip = firstChange(record, {tripInput, true});
    if (!trip) {
        result.state = stateWithoutChange(record, 1, _plan.timeout);
        return timeFrom(record, 1).count() >= 0;
    }
    if (*trip->step == 0) {
        result.state = MeasureState::ContactEarly;
        return true;
    }
    result.time = trip->time - record.steps[1];
    return result.time.count() >= 0 && result.time <= toDeviceTime(_plan.timeout + 1.0);
}

RunEnd TestRun::_measurePickUp()
{
    _announce({RunPhase::Kind::PickUp});
    SequenceRecord record;
    if (const auto end = _runRamp({_step(0.0, _plan.pause)}, _plan.pickUp, true, record);
        end != RunEnd::Complete)
        return end;
    RampResult result;
    const auto started = firstChange(record, {startInput, true});
    if (!started)
        result.state = stateWithoutChange(record, 1, _plan.pickUp.dwell);
    else if (*started->step == 0)
        result.state = MeasureState::ContactEarly;
    else
        result.multiple = _plan.pickUp.getMultiples()[*started->step - 1];
    _doneWeight += _rampWeight(_plan.pickUp);
    _listener.onPickUp(result);
    return RunEnd::Complete;
}

RunEnd TestRun::_measureDropOff()
{
    _announce({RunPhase::Kind::DropOff});
    auto hold = _step(_plan.dropOff.from, startTime);
    hold.endOn = InputCondition{startInput, true};
    SequenceRecord record;
    if (const auto end = _runRamp({_step(0.0, _plan.pause), hold}, _plan.dropOff, false, record);
        end != RunEnd::Complete)
        return end;
    RampResult result;
    const auto started = firstChange(record, {startInput, true});
    const auto dropped = firstChange(record, {startInput, false}, 2);
    if (started && *started->step == 0)
        result.state = MeasureState::ContactEarly;
    else if (!started || !dropped)
        result.state = MeasureState::NoOperation;
    else
        result.multiple = _plan.dropOff.getMultiples()[*dropped->step - 2];
    _doneWeight += _rampWeight(_plan.dropOff);
    _listener.onDropOff(result);
    return RunEnd::Complete;
}

/// The ramp's steps come behind those given, and each ends early when the start contact closes (or opens).
RunEnd TestRun::_runRamp(OutputSequence sequence, const Ramp& ramp, bool endsOnStart, SequenceRecord& record)
{
    for (const double multiple : ramp.getMultiples()) {
        sequence.push_back(_step(multiple, ramp.dwell));
        // The steps after the one that changes the contact end at once by the same condition.
        sequence.back().endOn = InputCondition{startInput, endsOnStart};
    }
    if (const auto end = _run(sequence); end != RunEnd::Complete)
        return end;
    record = _recorder.getRecord();
    return record.steps.size() == sequence.size() ? RunEnd::Complete
                                                  : _fail(lng::Overcurrent::get("Run.nonsense"));
}

RunEnd TestRun::_run(const OutputSequence& sequence)
{
    switch (_recorder.run(sequence)) {
    case SequenceRecorder::Outcome::Complete:
        return RunEnd::Complete;
    case SequenceRecorder::Outcome::Stopped:
        return RunEnd::Stopped;
    case SequenceRecorder::Outcome::Failed:
        break;
    }
    return _fail(_recorder.getError());
}

RunEnd TestRun::_fail(std::string error)
{
    _error = std::move(error);
    return RunEnd::Fault;
}

void TestRun::_announce(RunPhase phase)
{
    phase.progress = _wholeWeight > 0.0 ? _doneWeight / _wholeWeight : 0.0;
    _listener.onPhase(phase);
}

KesDriver::OutputStep TestRun::_step(double multiple, double seconds) const
{
    KesDriver::OutputStep step;
    step.outputs.currents[0].magnitude = multiple * _settings.settingCurrent;
    step.duration = toDeviceTime(seconds);
    return step;
}

double TestRun::_pointWeight(double multiple) const
{
    return _plan.pause + OperateCurve::operateTime(_settings, multiple).value_or(0.0);
}

double TestRun::_rampWeight(const Ramp& ramp) const
{
    // On the way to Is the ramp passes about this share of its steps.
    const double share = std::clamp(std::fabs(1.0 - ramp.from) / std::fabs(ramp.to - ramp.from), 0.0, 1.0);
    return _plan.pause + ramp.countSteps() * ramp.dwell * share;
}

} // namespace Overcurrent
