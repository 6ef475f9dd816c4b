#include <KesTestProgram/TestModel.h>

#include <KesTestProgram/TestArchive.h>
#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ReportFile.h>
#include <KesMeasure/TestEvaluation.h>

namespace KesTestProgram {

namespace {

using KesMeasure::Origin;
using KesMeasure::TestRecord;
namespace TestEvaluation = KesMeasure::TestEvaluation;

constexpr const char* settingsLostKey = "Repair.settingsLost";

} // namespace

TestModel::TestModel(TestKind kind) : _kind(std::move(kind)), _testObject(_kind.makeTestObject())
{
    _defaultSettings = _testObject->serialize();
    _testObject->signalChanged.connect([this](KesTree::Node&) { signalSettingsChanged.emit(); });
    _setCanProgramStart(true);
}

TestModel::~TestModel() = default;

TestModel::Test TestModel::createTest() const
{
    return _kind.makeTest(*_testObject);
}

TestInView TestModel::getTestInView() const
{
    {
        std::lock_guard lock(_recordMutex);
        if (_record)
            return {_recordTest, _record};
    }
    return {createTest(), std::nullopt};
}

std::optional<TestRecord> TestModel::_getRecord() const
{
    std::lock_guard lock(_recordMutex);
    return _record;
}

bool TestModel::isResultStale() const
{
    const auto record = _getRecord();
    return record && record->settings != _testObject->serialize();
}

bool TestModel::isUntouched() const
{
    return !_getRecord() && _testObject->serialize() == _defaultSettings;
}

void TestModel::announceOutcome()
{
    if (isRunning())
        return;
    const auto shown = getTestInView();
    const auto* record = shown.getRecord();
    _announce(record ? TestEvaluation::createOutcome(shown.test->createPlan(), record).text : std::string(),
              record ? record->origin : Origin::Device);
}

void TestModel::_announce(const std::string& text, Origin origin)
{
    using lng::Measure::get;
    const char* const title = get(origin == Origin::Unknown ? "Unknown.title" : "Simulated.title");
    _setState(origin == Origin::Device
                  ? text
                  : Kes::StringHelper::format(get("Simulated.state"), text, std::string(title)));
}

std::string TestModel::getDataSummary()
{
    const auto record = _getRecord();
    return TestEvaluation::summarize(record ? &*record : nullptr);
}

Kes::Result TestModel::writeReport(const std::string& path)
{
    const auto shown = getTestInView();
    const auto data =
        TestEvaluation::createReport(_kind.reportTitle, *shown.test, shown.getRecord(), _areResultsLost);
    return KesMeasure::ReportFile::write(path, data, "report/measurements.xsl");
}

std::string TestModel::createReport()
{
    const std::string folder = Kes::getKesCrossDocDir();
    Kes::mkdir_with_parents(folder);
    const std::string path = folder + "report.html";
    return writeReport(path) ? path : std::string();
}

void TestModel::newData(const std::string&)
{
    _abandonRun();
    (void)_testObject->deserialize(_defaultSettings);
    _replaceData(TestArchive());
}

std::unique_ptr<std::istream> TestModel::getDataStream()
{
    return TestArchive{_testObject->serialize(), _getRecord()}.pack(_kind);
}

bool TestModel::setDataStream(std::istream& stream, bool flag)
{
    if (flag)
        return setRepairDataStream(stream);
    const auto archive = TestArchive::read(_kind, stream);
    if (!archive || !_testObject->deserialize(archive->settings))
        return false;
    _load(*archive);
    return true;
}

bool TestModel::setRepairDataStream(std::istream& stream)
{
    const auto archive = TestArchive::repair(_kind, stream);
    if (!archive)
        return false;
    const std::string former = _testObject->serialize();
    const char* const settingsKey = _repairSettings(*archive);
    if (settingsKey == settingsLostKey && !archive->record) {
        // Nothing is left of the file.
        (void)_testObject->deserialize(former);
        return false;
    }
    _load(*archive);
    std::string text;
    const auto tell = [&text](bool isLost, const char* key) {
        if (isLost)
            text += (text.empty() ? "" : "\n") + std::string(lng::TestProgram::get(key));
    };
    tell(archive->areResultsLost, "Repair.resultsLost");
    tell(archive->isOriginLost, "Repair.originLost");
    tell(settingsKey, settingsKey);
    if (!text.empty())
        signalMessage.emit(text);
    return true;
}

const char* TestModel::_repairSettings(const TestArchive& archive)
{
    // What the file does not hold becomes that of its test or the default, not what the last file held.
    (void)_testObject->deserialize(_defaultSettings);
    const bool isOfTest = archive.record && _testObject->deserialize(archive.record->settings);
    if (_testObject->deserialize(archive.settings))
        return nullptr;
    if (_testObject->deserialize(archive.settings, false))
        return "Repair.settingsPartly";
    return isOfTest ? "Repair.settingsOfTest" : settingsLostKey;
}

void TestModel::_load(const TestArchive& archive)
{
    _abandonRun();
    _replaceData(archive);
}

void TestModel::_abandonRun()
{
    {
        std::lock_guard lock(_recordMutex);
        _isRunKept = false;
    }
    if (isRunning()) {
        stopTest();
        signalMessage.emit(lng::TestProgram::get("Run.archiveReplaced"));
    }
}

void TestModel::_replaceData(const TestArchive& archive)
{
    _areResultsLost = archive.areResultsLost;
    auto test = archive.record ? _kind.makeTestOf(archive.record->settings) : nullptr;
    {
        std::lock_guard lock(_recordMutex);
        _record = archive.record;
        _recordTest = std::move(test);
    }
    _progress = 0.0;
    signalSettingsChanged.emit();
    signalResultsChanged.emit();
    announceOutcome();
}

} // namespace KesTestProgram
