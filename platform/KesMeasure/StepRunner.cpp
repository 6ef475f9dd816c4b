#include <KesMeasure/StepRunner.h>

#include <KesMeasure/MeasureText.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace KesMeasure {

namespace {

using namespace std::chrono_literals;
using KesDriver::DeviceTime;
using KesDriver::OutputSequence;

/// A relay that opens its contact exactly at the end of its reset time is still seen to do so.
constexpr DeviceTime grace = 100ms;

} // namespace

StepRunner::StepRunner(KesDevice::Kesto& kesto, RunControl& control, std::optional<HeatBudget> budget)
    : _recorder(kesto, control), _budget(std::move(budget))
{}

StepRunner::Outcome StepRunner::run(const StepGuard& guard, const OutputSequence& sequence)
{
    _error.clear();
    const auto restTime = _getRestTime(guard, sequence);
    if (!restTime)
        return _fail(Outcome::TooHot, lng::Measure::get("Run.tooHot"));
    const auto outcome = _rest(guard, *restTime);
    if (*restTime > guard.restTime && onCooling)
        onCooling(0.0);
    return outcome == Outcome::Complete ? _record(sequence) : outcome;
}

/// The heat may have to go first.
std::optional<DeviceTime> StepRunner::_getRestTime(const StepGuard& guard, const OutputSequence& sequence)
{
    if (!_budget)
        return guard.restTime;
    const auto cooling = _budget->getRestBefore(sequence);
    if (!cooling || *cooling > longestCooling)
        return std::nullopt;
    const DeviceTime time(std::llround(std::ceil(*cooling) * 1e6));
    if (time > guard.restTime && onCooling)
        onCooling(std::ceil(*cooling));
    return std::max(guard.restTime, time);
}

StepRunner::Outcome StepRunner::_rest(const StepGuard& guard, DeviceTime restTime)
{
    const DeviceTime wait = std::max(guard.resetTime - restTime, DeviceTime(0)) + grace + guard.debounce;
    OutputSequence sequence{{guard.rest, restTime}, {guard.rest, wait}};
    if (guard.contacts.empty()) {
        sequence.pop_back();
        return _record(sequence);
    }
    std::vector<KesDriver::InputCondition> open;
    for (const unsigned input : guard.contacts)
        open.push_back({input, false});
    sequence.back().endOn =
        KesDriver::EndCondition(std::move(open), KesDriver::EndCondition::Join::All, guard.debounce);
    if (const auto outcome = _record(sequence); outcome != Outcome::Complete)
        return outcome;
    const auto record = getRecord();
    if (record.steps.size() != sequence.size())
        return _fail(Outcome::Failed, lng::Measure::get("Run.nonsense"));
    return record.end->time - record.steps.back() < wait ? Outcome::Complete : Outcome::NotReset;
}

StepRunner::Outcome StepRunner::_record(const OutputSequence& sequence)
{
    switch (_recorder.run(sequence)) {
    case SequenceRecorder::Outcome::Complete:
        _heat(sequence);
        return Outcome::Complete;
    case SequenceRecorder::Outcome::Stopped:
        return Outcome::Stopped;
    case SequenceRecorder::Outcome::Failed:
        break;
    }
    return _fail(Outcome::Failed, _recorder.getError());
}

/// The steps have taken the times that the device reports, which are shorter than planned when contacts
/// moved.
void StepRunner::_heat(const OutputSequence& sequence)
{
    if (!_budget)
        return;
    const auto record = getRecord();
    for (std::size_t i = 0; i < sequence.size() && i < record.steps.size(); ++i) {
        const auto end = i + 1 < record.steps.size() ? record.steps[i + 1] : record.end->time;
        // A device that talks nonsense does not make the relay colder than it is.
        _budget->add(sequence[i], std::clamp(end - record.steps[i], DeviceTime(0), sequence[i].duration));
    }
}

StepRunner::Outcome StepRunner::_fail(Outcome outcome, std::string error)
{
    _error = std::move(error);
    return outcome;
}

} // namespace KesMeasure
