// The part of the model that makes the test; on the start thread, except as noted.

#include <Overcurrent/model/OvercurrentModel.h>

#include <Overcurrent/bench/BenchRelay.h>
#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ScreenNumber.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/text/Program.h>

#include <glibmm/datetime.h>

#include <stdexcept>

namespace Overcurrent {

namespace {

using Kes::StringHelper::format;
using KesProgram::RunVerdict;

std::string refusal(const Kes::Result& result)
{
    return format(lng::Overcurrent::get("Plan.refused"),
                  Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
}

RunVerdict toRunVerdict(KesMeasure::Verdict verdict)
{
    using KesMeasure::Verdict;
    switch (verdict) {
    case Verdict::None:
        break;
    case Verdict::Passed:
        return RunVerdict::Passed;
    case Verdict::Failed:
        return RunVerdict::Failed;
    case Verdict::Stopped:
        return RunVerdict::Stopped;
    case Verdict::Fault:
        return RunVerdict::Fault;
    }
    return RunVerdict::None;
}

std::string nameOf(const RunPhase& phase)
{
    switch (phase.kind) {
    case RunPhase::Kind::PickUp:
        return lng::Overcurrent::get("State.pickUp");
    case RunPhase::Kind::DropOff:
        return lng::Overcurrent::get("State.dropOff");
    case RunPhase::Kind::Point:
        break;
    }
    return format(lng::Overcurrent::get("State.point"), phase.number, phase.count,
                  KesMeasure::ScreenNumber::multiple(phase.multiple));
}

std::string phaseText(const RunPhase& phase)
{
    if (phase.coolingSeconds <= 0.0)
        return nameOf(phase);
    return format(lng::Measure::get("Run.cooling"), nameOf(phase),
                  KesMeasure::ScreenNumber::shortest(phase.coolingSeconds));
}

} // namespace

/// GUI thread.
bool OvercurrentModel::_onPrepareStart()
{
    _runSettings = getSettings();
    _runPlan = _plan;
    const auto result = _planError.empty() ? _runPlan.check(_runSettings) : Kes::Result::failure(_planError);
    if (!result) {
        signalMessage.emit(refusal(result));
        return false;
    }
    if (confirmReplacing && _hasUnsavedTest() && !confirmReplacing())
        return false;
    _verdict = RunVerdict::None;
    _progress = 0.0;
    _control.reset();
    return true;
}

bool OvercurrentModel::_hasUnsavedTest()
{
    const auto results = getResults();
    return results && DataSummary::countMeasured(*results) > 0 && getArchiveManager()->isFileChanged();
}

bool OvercurrentModel::_onPrepareHardware()
{
    if (!getHardware()->isOutputRunning())
        _bench.wire(*getHardware(), [this] { return makeBenchRelay(_runSettings); });
    if (!ProgramModel::_onPrepareHardware())
        return false;
    const auto result = _runPlan.check(_runSettings, _getKesto()->getLimits());
    if (!result)
        signalMessage.emit(refusal(result));
    return static_cast<bool>(result);
}

void OvercurrentModel::_onStart()
{
    const auto kesto = _getKesto();
    _beginResults(*kesto);
    TestRun run(_runSettings, _runPlan, *kesto, _control, *this);
    auto end = run.execute();
    // What has become of the devices counts, and not who was told of it first.
    if (!getHardware()->checkOutput())
        end = RunEnd::Fault;
    else if (!run.getError().empty())
        signalMessage.emit(run.getError());
    _endResults(end);
    _finish();
}

/// Any thread.
void OvercurrentModel::_onStop()
{
    _control.stop();
}

/// The first device makes the test. The checks before a run have seen that there is one, but the
/// configuration may have been replaced since.
std::shared_ptr<KesDevice::Kesto> OvercurrentModel::_getKesto()
{
    const auto kestos = getHardware()->getKestos().lease();
    if (kestos.empty())
        throw std::runtime_error(lng::Program::get("Message.noKestos"));
    return kestos.front();
}

void OvercurrentModel::_beginResults(const KesDevice::Kesto& kesto)
{
    TestResults results;
    results.settings = _runSettings;
    results.plan = _runPlan;
    results.device = kesto.getIdentifer().toDisplayString();
    results.origin = kesto.isSimulated() ? Origin::Simulated : Origin::Device;
    results.startedAt = Glib::DateTime::create_now_local().format("%Y-%m-%d %H:%M:%S");
    {
        std::lock_guard lock(_resultsMutex);
        _results = std::move(results);
        _isRunKept = true;
    }
    signalResultsChanged.emit();
}

void OvercurrentModel::_endResults(RunEnd end)
{
    _verdict = end == RunEnd::Fault ? RunVerdict::Fault : RunVerdict::Stopped;
    _changeRunResults([&](TestResults& results) {
        results.end = end;
        _verdict = toRunVerdict(Evaluation::verdict(results));
    });
    if (end == RunEnd::Complete)
        _progress = 1.0;
    signalProgressChanged.emit();
}

void OvercurrentModel::_changeRunResults(const std::function<void(TestResults&)>& change)
{
    {
        std::lock_guard lock(_resultsMutex);
        if (!_isRunKept || !_results)
            return;
        change(*_results);
    }
    signalResultsChanged.emit();
}

void OvercurrentModel::onPhase(const RunPhase& phase)
{
    _progress = phase.progress;
    const auto results = getResults();
    _announce(phaseText(phase), results ? results->origin : Origin::Device);
    signalProgressChanged.emit();
}

void OvercurrentModel::onPoint(const PointResult& result)
{
    _changeRunResults([&](TestResults& results) { results.points.push_back(result); });
}

void OvercurrentModel::onPickUp(const RampResult& result)
{
    _changeRunResults([&](TestResults& results) { results.pickUp = result; });
}

void OvercurrentModel::onDropOff(const RampResult& result)
{
    _changeRunResults([&](TestResults& results) { results.dropOff = result; });
}

} // namespace Overcurrent
