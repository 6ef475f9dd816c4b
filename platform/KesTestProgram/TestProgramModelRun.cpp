// The part of the model that makes the test; on the start thread, except as noted.

#include <KesTestProgram/TestProgramModel.h>

#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/text/Program.h>

#include <stdexcept>

namespace KesTestProgram {

namespace {

using KesMeasure::Origin;
using KesMeasure::RunEnd;
using KesMeasure::Verdict;
using KesProgram::RunVerdict;

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
bool TestProgramModel::_onPrepareStart()
{
    if (!_accept(_planError.empty() ? _prepareTest() : Kes::Result::failure(_planError)))
        return false;
    if (confirmReplacing && _hasUnsavedTest() && !confirmReplacing())
        return false;
    _verdict = RunVerdict::None;
    _progress = 0.0;
    _control.reset();
    return true;
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
    return ProgramModel::_onPrepareHardware() && _accept(_checkLimits(_getKesto()->getLimits()));
}

void TestProgramModel::_onStart()
{
    const auto kesto = _getKesto();
    _beginResults({KesMeasure::TestCircumstances::ofTestWith(*kesto)});
    auto result = _runTest(*kesto, _control);
    // What has become of the devices counts, and not who was told of it first.
    if (!getHardware()->checkOutput())
        result.end = RunEnd::Fault;
    else if (!result.error.empty())
        signalMessage.emit(result.error);
    _endRun(result.end);
    _finish();
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

void TestProgramModel::_announceStep(const std::string& text, double progress)
{
    _progress = progress;
    const auto test = getMeasuredTest();
    _announce(text, test ? test->origin : Origin::Device);
    signalProgressChanged.emit();
}

} // namespace KesTestProgram
