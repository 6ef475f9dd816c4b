// The part of the model that makes the test; on the start thread, except as noted.

#include <KesTestProgram/TestProgramModel.h>

#include <KesTestProgram/TestProgramText.h>

#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ScreenNumber.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/text/Program.h>

#include <algorithm>
#include <stdexcept>

namespace KesTestProgram {

namespace {

using KesMeasure::Origin;
using KesMeasure::RunEnd;
using KesMeasure::Verdict;
using KesProgram::RunVerdict;

constexpr auto announceEvery = std::chrono::milliseconds(250);

RunVerdict toRunVerdict(Verdict verdict)
{
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

} // namespace

/// GUI thread.
bool TestProgramModel::continueTest()
{
    return whyNotContinue().empty() && _start(RunKind::Rest, {});
}

/// GUI thread.
bool TestProgramModel::repeatTest(std::vector<std::size_t> rows)
{
    const std::size_t measured = _countMeasured();
    rows.erase(std::remove_if(rows.begin(), rows.end(), [=](std::size_t row) { return row >= measured; }),
               rows.end());
    return !rows.empty() && whyNotRepeat().empty() && _start(RunKind::Again, std::move(rows));
}

/// GUI thread.
bool TestProgramModel::_start(RunKind kind, std::vector<std::size_t> rows)
{
    _nextKind = kind;
    _rows = std::move(rows);
    const bool isStarted = startTest();
    _nextKind = RunKind::Anew;
    return isStarted;
}

/// GUI thread.
std::string TestProgramModel::whyNotContinue()
{
    auto why = whyNotRepeat();
    return why.empty() && _countMeasured() >= _countPlanned() ? lng::TestProgram::get("Again.whole") : why;
}

/// GUI thread.
std::string TestProgramModel::whyNotRepeat()
{
    return isRunning() || !getCanStart() ? lng::TestProgram::get("Again.running") : _whyResultsStay();
}

/// Why nothing can be added to the results. GUI thread.
std::string TestProgramModel::_whyResultsStay() const
{
    const auto test = getMeasuredTest();
    if (!test || _countMeasured() == 0)
        return lng::TestProgram::get("Again.none");
    if (test->origin == Origin::Unknown)
        return lng::TestProgram::get("Again.unknownDevice");
    return isResultStale() || !_planError.empty() ? lng::Measure::get("Outcome.stale") : std::string();
}

/// GUI thread.
bool TestProgramModel::_onPrepareStart()
{
    _kind = _nextKind;
    if (!_accept(_planError.empty() ? _prepareTest() : Kes::Result::failure(_planError)))
        return false;
    if (_kind == RunKind::Anew && !_chooseKind())
        return false;
    if (_kind != RunKind::Anew)
        _keepResults();
    _verdict = RunVerdict::None;
    _progress = 0.0;
    _remaining = 0.0;
    _announcedAt = {};
    _control.reset();
    return true;
}

/// GUI thread.
bool TestProgramModel::_chooseKind()
{
    if (chooseStart && _countMeasured() < _countPlanned() && _whyResultsStay().empty()) {
        const auto chosen = chooseStart();
        if (!chosen)
            return false;
        _kind = *chosen;
    }
    return _kind != RunKind::Anew || !confirmReplacing || !_hasUnsavedTest() || confirmReplacing();
}

/// GUI thread.
bool TestProgramModel::_hasUnsavedTest()
{
    return _countMeasured() > 0 && getArchiveManager()->isFileChanged();
}

/// Any thread.
bool TestProgramModel::_accept(const Kes::Result& result)
{
    if (!result)
        signalMessage.emit(
            Kes::StringHelper::format(lng::TestProgram::get("Run.refused"),
                                      Kes::ObjectErrorHelper::toDisplayString({result.getError()})));
    return static_cast<bool>(result);
}

bool TestProgramModel::_onPrepareHardware()
{
    if (!getHardware()->isOutputRunning())
        _bench.wire(*getHardware(), [this] { return _makeBenchObject(); });
    return ProgramModel::_onPrepareHardware() && _accept(_checkLimits(_getKesto()->getLimits())) &&
           _accept(_isSameDevice() ? Kes::Result(true)
                                   : Kes::Result::failure(lng::TestProgram::get("Again.otherDevice")));
}

/// Results of two devices are no test.
bool TestProgramModel::_isSameDevice()
{
    const auto test = getMeasuredTest();
    return _kind == RunKind::Anew || !test ||
           test->isOfSameDevice(KesMeasure::TestCircumstances::ofTestWith(*_getKesto()));
}

std::vector<std::size_t> TestProgramModel::_getOrder() const
{
    if (_kind == RunKind::Again)
        return _rows;
    std::vector<std::size_t> order;
    for (std::size_t i = _countMeasured(); i < _countPlanned(); ++i)
        order.push_back(i);
    return order;
}

void TestProgramModel::_onStart()
{
    const auto kesto = _getKesto();
    const KesMeasure::MeasuredTest test{KesMeasure::TestCircumstances::ofTestWith(*kesto)};
    const auto result = _beginRun(test) ? _run(*kesto) : RunResult{RunEnd::Stopped, {}};
    _endRun(_judgeEnd(result.end));
    _finish();
}

/// False when the results to continue with are there no more.
bool TestProgramModel::_beginRun(const KesMeasure::MeasuredTest& test)
{
    if (_kind != RunKind::Anew)
        return _resumeResults(test);
    _beginResults(test);
    return true;
}

TestProgramModel::RunResult TestProgramModel::_run(KesDevice::Kesto& kesto)
{
    auto result = _runTest(kesto, _control, _getOrder());
    // What has become of the devices counts, and not who heard of it first.
    if (!getHardware()->checkOutput())
        result.end = RunEnd::Fault;
    else if (!result.error.empty())
        signalMessage.emit(result.error);
    return result;
}

/// What a repetition leaves is what counts: a part of a test is no whole one, and a whole one that stays so
/// has not been stopped or ended.
RunEnd TestProgramModel::_judgeEnd(RunEnd end) const
{
    const bool isWhole = _countMeasured() == _countPlanned();
    if (end == RunEnd::Complete && !isWhole)
        return RunEnd::Stopped;
    const bool isStillWhole = isWhole && _kind == RunKind::Again && end != RunEnd::Fault;
    return isStillWhole ? RunEnd::Complete : end;
}

/// Any thread.
void TestProgramModel::_onStop()
{
    _control.stop();
}

/// The first device makes the test. The checks before a run have seen that there is one, but the
/// configuration may have been replaced since.
std::shared_ptr<KesDevice::Kesto> TestProgramModel::_getKesto()
{
    const auto kestos = getHardware()->getKestos().lease();
    if (kestos.empty())
        throw std::runtime_error(lng::Program::get("Message.noKestos"));
    return kestos.front();
}

void TestProgramModel::_endRun(RunEnd end)
{
    _verdict = end == RunEnd::Fault ? RunVerdict::Fault : RunVerdict::Stopped;
    if (const auto verdict = _endResults(end))
        _verdict = toRunVerdict(*verdict);
    if (end == RunEnd::Complete)
        _progress = 1.0;
    signalProgressChanged.emit();
}

void TestProgramModel::_announceStep(const std::string& text, const KesMeasure::RunTimes& times)
{
    using KesMeasure::ScreenNumber::duration;
    _progress = times.share;
    _remaining = times.remaining;
    const auto now = std::chrono::steady_clock::now();
    if (now - _announcedAt < announceEvery)
        return;
    _announcedAt = now;
    const auto test = getMeasuredTest();
    _announce(Kes::StringHelper::format(lng::Measure::get("Run.times"), text, duration(times.elapsed),
                                        duration(times.remaining)),
              test ? test->origin : Origin::Device);
    signalProgressChanged.emit();
}

} // namespace KesTestProgram
