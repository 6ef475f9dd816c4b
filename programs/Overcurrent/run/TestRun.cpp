#include <Overcurrent/run/TestRun.h>

#include <Overcurrent/data/StageTimes.h>
#include <Overcurrent/data/TestSequences.h>

#include <KesMeasure/ContactChanges.h>
#include <KesMeasure/MeasureText.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numeric>
#include <utility>

namespace Overcurrent {

namespace {

using KesDriver::DeviceTime;
using KesDriver::toDeviceTime;
using KesDriver::InputCondition;
using KesMeasure::SequenceRecord;
using KesMeasure::StepRunner;
namespace ContactChanges = KesMeasure::ContactChanges;

/// No change came: either the first step ran its whole time, or the contact was closed at once.
MeasureState stateWithoutChange(const SequenceRecord& record, DeviceTime whole)
{
    const auto end = record.steps.size() > 1 ? record.steps[1] : record.end->time;
    return end - record.steps[0] < whole / 2 ? MeasureState::ContactEarly : MeasureState::NoOperation;
}

std::vector<std::size_t> wholeOrder(const RelaySettings& settings, const TestPlan& plan)
{
    std::vector<std::size_t> order(plan.countPoints() + (settings.hasRamps() ? 2U : 0U));
    std::iota(order.begin(), order.end(), std::size_t{0});
    return order;
}

} // namespace

TestRun::TestRun(const RelaySettings& settings, const TestPlan& plan, KesDevice::Kesto& kesto,
                 KesMeasure::RunControl& control, ITestRunListener& listener)
    : TestRun(settings, plan, kesto, control, listener, wholeOrder(settings, plan),
              KesMeasure::HeatBudget(settings.getWithstand()))
{}

TestRun::TestRun(const RelaySettings& settings, const TestPlan& plan, KesDevice::Kesto& kesto,
                 KesMeasure::RunControl& control, ITestRunListener& listener, std::vector<std::size_t> order,
                 const KesMeasure::HeatBudget& heat)
    : _settings(settings),
      _plan(plan),
      _points(plan.getPoints()),
      _guard(TestSequences::guard(settings, plan)),
      _listener(listener),
      _runner(kesto, control, heat),
      _order(std::move(order)),
      _clock(_getWeights())
{
    _runner.onCooling = [this](double seconds) {
        _clock.extendStep(seconds);
        _phase.coolingSeconds = seconds;
        _tell();
    };
    _runner.onTime() = [this](DeviceTime now) {
        _clock.setTime(now);
        _tell();
    };
}

RunEnd TestRun::execute()
{
    for (const auto number : _order)
        if (const auto end = _measure(number); end != RunEnd::Complete)
            return end;
    return RunEnd::Complete;
}

RunEnd TestRun::_measure(std::size_t number)
{
    const std::size_t count = _points.size();
    if (number < count)
        return _measurePoints(number);
    return number == count ? _measurePickUp() : _measureDropOff();
}

RunEnd TestRun::_measurePoints(std::size_t index)
{
    PointResult result{_points[index]};
    std::vector<DeviceTime> times;
    for (unsigned i = 1; i <= _plan.repetitions && result.state == MeasureState::Measured; ++i) {
        _announce({RunPhase::Kind::Point, index + 1, _points.size(), _points[index], i});
        if (const auto end = _measurePoint(result); end != RunEnd::Complete)
            return end;
        if (result.state == MeasureState::Measured)
            times.push_back(result.time);
    }
    result.takeSingles(std::move(times));
    _listener.onPoint(index, result);
    return _judge(result.state);
}

RunEnd TestRun::_measurePoint(PointResult& result)
{
    const auto end = _run(TestSequences::point(_settings, _plan, result), result.state);
    if (end != RunEnd::Complete || result.state != MeasureState::Measured)
        return end;
    return _evaluatePoint(result) ? RunEnd::Complete : _fail(lng::Measure::get("Run.nonsense"));
}

/// False when the device's times make no sense.
bool TestRun::_evaluatePoint(PointResult& result)
{
    const auto record = _runner.getRecord();
    if (record.steps.size() != 1 || record.end->time < record.steps[0])
        return false;
    const auto limit = toDeviceTime(TestSequences::pointLimit(_settings, _plan, result));
    const auto trip = ContactChanges::findFirst(record, {_settings.tripInput, true}, _guard.debounce);
    if (!trip) {
        result.state = stateWithoutChange(record, limit);
        return true;
    }
    result.time = trip->time - record.steps[0];
    return result.time.count() >= 0 && result.time <= limit + std::chrono::seconds(1);
}

RunEnd TestRun::_measurePickUp()
{
    _announce({RunPhase::Kind::PickUp});
    RampResult result;
    const auto end = _measureRamp(_plan.pickUp, result, [this](const auto& multiples, auto& found) {
        return _runPickUp(multiples, found);
    });
    if (end != RunEnd::Complete)
        return end;
    _listener.onPickUp(result);
    return _judge(result.state);
}

RunEnd TestRun::_measureDropOff()
{
    _announce({RunPhase::Kind::DropOff});
    RampResult result;
    const auto end = _measureRamp(_plan.dropOff, result, [this](const auto& multiples, auto& found) {
        return _runDropOff(multiples, found);
    });
    if (end != RunEnd::Complete)
        return end;
    _listener.onDropOff(result);
    return _judge(result.state);
}

template <typename Measure>
RunEnd TestRun::_measureRamp(const Ramp& ramp, RampResult& result, Measure measure)
{
    const auto end = measure(TestSequences::coarse(ramp), result);
    if (end != RunEnd::Complete || result.state != MeasureState::Measured)
        return end;
    RampResult closer;
    const auto fineEnd = measure(TestSequences::fine(ramp, result.without, result.multiple), closer);
    // A relay that is not the same twice keeps the coarse interval.
    if (fineEnd == RunEnd::Complete && closer.state == MeasureState::Measured)
        result = closer;
    else if (closer.state == MeasureState::NotReset)
        result.state = closer.state;
    return fineEnd;
}

namespace {

/// Between the step of the change and the one before it. A change at the first step has none: where the relay
/// changes is not known then.
RampResult between(const std::vector<double>& multiples, std::size_t index)
{
    if (index == 0)
        return {MeasureState::ContactEarly};
    return {MeasureState::Measured, multiples[index], multiples[index - 1]};
}

} // namespace

RunEnd TestRun::_runPickUp(const Multiples& multiples, RampResult& result)
{
    const auto sequence = TestSequences::pickUp(_settings, _plan, multiples);
    const auto end = _run(sequence, result.state);
    if (end != RunEnd::Complete || result.state != MeasureState::Measured)
        return end;
    const auto record = _runner.getRecord();
    if (record.steps.size() != sequence.size())
        return _fail(lng::Measure::get("Run.nonsense"));
    const auto closed = ContactChanges::findFirst(record, {_settings.getRampInput(), true}, _guard.debounce);
    result = closed ? between(multiples, *closed->step)
                    : RampResult{stateWithoutChange(record, sequence[0].duration)};
    return RunEnd::Complete;
}

RunEnd TestRun::_runDropOff(const Multiples& multiples, RampResult& result)
{
    const auto sequence = TestSequences::dropOff(_settings, _plan, multiples);
    const auto end = _run(sequence, result.state);
    if (end != RunEnd::Complete || result.state != MeasureState::Measured)
        return end;
    const auto record = _runner.getRecord();
    if (record.steps.size() != sequence.size())
        return _fail(lng::Measure::get("Run.nonsense"));
    const unsigned input = _settings.getRampInput();
    const auto closed = ContactChanges::findFirst(record, {input, true}, _guard.debounce);
    const auto opened = ContactChanges::findFirst(record, {input, false}, _guard.debounce, 1);
    if (!closed)
        result = {stateWithoutChange(record, sequence[0].duration)};
    else
        result = opened ? between(multiples, *opened->step - 1) : RampResult{MeasureState::NoDropOff};
    return RunEnd::Complete;
}

RunEnd TestRun::_run(const KesDriver::OutputSequence& sequence, MeasureState& state)
{
    switch (_runner.run(_guard, sequence)) {
    case Outcome::Complete:
        return RunEnd::Complete;
    case Outcome::NotReset:
        state = MeasureState::NotReset;
        return RunEnd::Complete;
    case Outcome::TooHot:
        _error = _runner.getError();
        return RunEnd::Stopped;
    case Outcome::Stopped:
        return RunEnd::Stopped;
    case Outcome::Failed:
        break;
    }
    return _fail(_runner.getError());
}

RunEnd TestRun::_judge(MeasureState state) const
{
    return state == MeasureState::Measured || _plan.goesOn ? RunEnd::Complete : RunEnd::Ended;
}

RunEnd TestRun::_fail(std::string error)
{
    _error = std::move(error);
    return RunEnd::Fault;
}

void TestRun::_announce(const RunPhase& phase)
{
    _clock.beginStep();
    _phase = phase;
    _tell();
}

void TestRun::_tell()
{
    _phase.times = _clock.getTimes();
    _listener.onPhase(_phase);
}

std::vector<double> TestRun::_getWeights() const
{
    std::vector<double> weights;
    for (const auto number : _order)
        if (number < _points.size())
            weights.insert(weights.end(), _plan.repetitions, _pointWeight(_points[number]));
        else if (number == _points.size())
            weights.push_back(_rampWeight(_plan.pickUp, _plan.pickUp.dwell));
        else
            weights.push_back(_rampWeight(_plan.dropOff, _settings.resetTime));
    return weights;
}

double TestRun::_pointWeight(const PlannedPoint& point) const
{
    const auto trip = StageTimes::operate(_settings, _plan.caseOf(point.fault), point.multiple);
    return std::max(_plan.pause, _settings.resetTime) + (trip ? trip->seconds : 0.0);
}

double TestRun::_rampWeight(const Ramp& ramp, double dwell) const
{
    // On the way to Is the ramp passes about this share of its coarse steps; a coarse step has some fine
    // ones.
    const double share = std::clamp(std::fabs(1.0 - ramp.from) / std::fabs(ramp.to - ramp.from), 0.0, 1.0);
    const double steps = share * static_cast<double>(TestSequences::coarse(ramp).size()) + 4.0;
    return 2.0 * std::max(_plan.pause, _settings.resetTime) + steps * std::max(ramp.dwell, dwell);
}

} // namespace Overcurrent
