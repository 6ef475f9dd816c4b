#include <KesMeasure/SequenceRecorder.h>

#include <KesMeasure/MeasureText.h>

#include <KesCommon/ObjectErrorHelper.h>

#include <chrono>
#include <numeric>
#include <variant>

namespace KesMeasure {

namespace {

using namespace std::chrono_literals;

/// A device that has not reported the end of a sequence this long after it was due, on its clock and on the
/// host's, will not report it any more. Both count: a fast simulated clock would soon be late on its own.
constexpr auto grace = 5s;
constexpr auto lookAgain = 250ms;
constexpr auto faultDelay = 300ms;
constexpr auto endDelay = 500ms;

KesDriver::DeviceTime durationOf(const KesDriver::OutputSequence& sequence)
{
    return std::accumulate(sequence.begin(), sequence.end(), KesDriver::DeviceTime(0),
                           [](auto sum, const auto& step) { return sum + step.duration; });
}

std::string textOf(const Kes::Result& result)
{
    return Kes::ObjectErrorHelper::toDisplayString({result.getError()});
}

} // namespace

SequenceRecorder::SequenceRecorder(KesDevice::Kesto& kesto, RunControl& control)
    : _kesto(kesto), _control(control)
{
    _reports = kesto.signalReport.connect([this](const KesDriver::Report& report) { _onReport(report); });
}

SequenceRecorder::Outcome SequenceRecorder::run(const KesDriver::OutputSequence& sequence)
{
    {
        std::lock_guard lock(_control.getMutex());
        _record = {};
    }
    _error.clear();
    if (_control.isStopped())
        return Outcome::Stopped;
    KesDriver::DeviceTime begin{0};
    auto result = _kesto.readTime(begin);
    if (result) {
        _tellTime(begin);
        result = _kesto.runSequence(sequence);
    }
    if (!result)
        return _control.isStopped() ? Outcome::Stopped : _fail(textOf(result));
    const auto outcome = _wait(begin + durationOf(sequence));
    if (outcome != Outcome::Complete)
        _stopOutputs();
    return outcome;
}

/// The outputs must be off whatever the reason; when the device does not answer, it says so by itself.
void SequenceRecorder::_stopOutputs()
{
    if (!_kesto.stopOutputs())
        return;
    // The end of this sequence must not be taken for that of the next one.
    _control.waitThroughStop(endDelay, [this] { return _record.end.has_value(); });
}

SequenceRecorder::Outcome SequenceRecorder::_wait(KesDriver::DeviceTime expectedEnd)
{
    std::optional<std::chrono::steady_clock::time_point> due;
    while (true) {
        const bool isEnded = _control.waitFor(lookAgain, [this] { return _record.end.has_value(); });
        if (_control.isStopped())
            return Outcome::Stopped;
        if (isEnded) {
            _tellTime(getRecord().end->time);
            return _judgeEnd();
        }
        const auto now = std::chrono::steady_clock::now();
        if (_isOver(expectedEnd) && !due)
            due = now;
        if (due && now - *due > grace)
            return _fail(lng::Measure::get("Run.sequenceLost"));
        // Nobody may have been able to say so.
        if (!_kesto.isConnected())
            return _judgeEarlyEnd();
    }
}

bool SequenceRecorder::_isOver(KesDriver::DeviceTime expectedEnd) const
{
    KesDriver::DeviceTime now{0};
    if (!_kesto.readTime(now))
        return false;
    _tellTime(now);
    return now >= expectedEnd;
}

void SequenceRecorder::_tellTime(KesDriver::DeviceTime now) const
{
    if (onTime)
        onTime(now);
}

SequenceRecorder::Outcome SequenceRecorder::_judgeEnd()
{
    return getRecord().end->isComplete ? Outcome::Complete : _judgeEarlyEnd();
}

SequenceRecorder::Outcome SequenceRecorder::_judgeEarlyEnd()
{
    // A fault of this device has been reported before and has stopped the run. One of another device, for
    // which this one was stopped, may still be on its way, and stops the run with its own text.
    _control.waitFor(faultDelay, [] { return false; });
    return _control.isStopped() ? Outcome::Stopped : _fail(lng::Measure::get("Run.sequenceEnded"));
}

SequenceRecorder::Outcome SequenceRecorder::_fail(std::string error)
{
    _error = std::move(error);
    return Outcome::Failed;
}

SequenceRecord SequenceRecorder::getRecord() const
{
    std::lock_guard lock(_control.getMutex());
    return _record;
}

void SequenceRecorder::_onReport(const KesDriver::Report& report)
{
    {
        std::lock_guard lock(_control.getMutex());
        if (const auto* input = std::get_if<KesDriver::InputEvent>(&report); input && input->step)
            _record.inputs.push_back(*input);
        else if (const auto* step = std::get_if<KesDriver::StepEvent>(&report))
            _record.steps.push_back(step->time);
        else if (const auto* end = std::get_if<KesDriver::SequenceEvent>(&report))
            _record.end = *end;
    }
    _control.notify();
}

} // namespace KesMeasure
