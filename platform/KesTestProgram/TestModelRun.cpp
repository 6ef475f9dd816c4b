// The part of the model that makes the test; on the start thread, except as noted.

#include <KesTestProgram/TestModel.h>

#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/OutputCheck.h>
#include <KesMeasure/TestEvaluation.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/text/Program.h>

#include <glibmm/datetime.h>

#include <stdexcept>

namespace KesTestProgram {

namespace {

using Kes::StringHelper::format;
using KesMeasure::Origin;
using KesMeasure::RunEnd;
using KesMeasure::TestRecord;
using KesMeasure::Verdict;
using KesProgram::RunVerdict;

std::string refusal(const Kes::Result& result)
{
    return format(lng::TestProgram::get("Run.refused"),
                  Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
}

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
bool TestModel::_onPrepareStart()
{
    _runSettings = _testObject->serialize();
    _runTest = createTest();
    if (const auto result = _runTest->check(); !result) {
        signalMessage.emit(refusal(result));
        return false;
    }
    if (confirmReplacing && _hasUnsavedTest() && !confirmReplacing())
        return false;
    _runPlan = _runTest->createPlan();
    _verdict = RunVerdict::None;
    _progress = 0.0;
    _control.reset();
    return true;
}

bool TestModel::_hasUnsavedTest()
{
    const auto record = _getRecord();
    return record && !record->readings.empty() && getArchiveManager()->isFileChanged();
}

bool TestModel::_onPrepareHardware()
{
    if (!getHardware()->isOutputRunning())
        _bench.wire(*getHardware(), [this] { return _runTest->makeTestObject(); });
    if (!ProgramModel::_onPrepareHardware())
        return false;
    const auto result = _checkLimits();
    if (!result)
        signalMessage.emit(refusal(result));
    return static_cast<bool>(result);
}

Kes::Result TestModel::_checkLimits()
{
    const auto limits = _getKesto()->getLimits();
    for (const auto& planned : _runPlan)
        for (const auto& sequence : planned.sequences)
            if (auto result = KesDriver::checkSequence(sequence, limits); !result)
                return result;
    return true;
}

void TestModel::_onStart()
{
    const auto kesto = _getKesto();
    _beginRecord(*kesto);
    KesMeasure::MeasurementRun run(_runPlan, *kesto, _control, *this);
    auto end = run.execute();
    // What has become of the devices counts, and not who was told of it first.
    if (!getHardware()->checkOutput())
        end = RunEnd::Fault;
    else if (end == RunEnd::Fault)
        signalMessage.emit(run.getError());
    _endRecord(end);
    _finish();
}

/// Any thread.
void TestModel::_onStop()
{
    _control.stop();
}

/// The first device makes the test. The checks before a run have seen that there is one, but the
/// configuration may have been replaced since.
std::shared_ptr<KesDevice::Kesto> TestModel::_getKesto()
{
    const auto kestos = getHardware()->getKestos().lease();
    if (kestos.empty())
        throw std::runtime_error(lng::Program::get("Message.noKestos"));
    return kestos.front();
}

void TestModel::_beginRecord(const KesDevice::Kesto& kesto)
{
    TestRecord record;
    record.settings = _runSettings;
    record.device = kesto.getIdentifer().toDisplayString();
    record.origin = kesto.isSimulated() ? Origin::Simulated : Origin::Device;
    record.startedAt = Glib::DateTime::create_now_local().format("%Y-%m-%d %H:%M:%S");
    {
        std::lock_guard lock(_recordMutex);
        _record = std::move(record);
        _recordTest = _runTest;
        _isRunKept = true;
    }
    signalResultsChanged.emit();
}

void TestModel::_endRecord(RunEnd end)
{
    _verdict = end == RunEnd::Fault ? RunVerdict::Fault : RunVerdict::Stopped;
    _changeRecord([&](TestRecord& record) {
        record.end = end;
        _verdict = toRunVerdict(KesMeasure::TestEvaluation::judge(_runPlan, record));
    });
    if (end == RunEnd::Complete)
        _progress = 1.0;
    signalProgressChanged.emit();
}

void TestModel::_changeRecord(const std::function<void(TestRecord&)>& change)
{
    {
        std::lock_guard lock(_recordMutex);
        if (!_isRunKept || !_record)
            return;
        change(*_record);
    }
    signalResultsChanged.emit();
}

void TestModel::onMeasurement(std::size_t index, double progress)
{
    _progress = progress;
    const auto record = _getRecord();
    const auto& planned = _runPlan[index];
    _announce(format(lng::TestProgram::get("State.measurement"), index + 1, _runPlan.size(), planned.object,
                     planned.quantity),
              record ? record->origin : Origin::Device);
    signalProgressChanged.emit();
}

void TestModel::onReading(const KesMeasure::Reading& reading)
{
    _changeRecord([&](TestRecord& record) { record.readings.push_back(reading); });
}

} // namespace KesTestProgram
