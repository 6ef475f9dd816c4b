#include <Overcurrent/model/OvercurrentModel.h>

#include <Overcurrent/data/OvercurrentArchive.h>
#include <Overcurrent/data/TestOutcome.h>
#include <Overcurrent/report/ReportDocument.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ReportFile.h>
#include <KesProgram/archive/ArchiveManager.h>

namespace Overcurrent {

namespace {

using KesProgram::RunVerdict;
namespace Nodes = KesTree::RelayNodes;

constexpr const char* settingsLostKey = "Repair.settingsLost";

/// What `OvercurrentArchive::repair` could not read, a line for each.
std::string lossText(const OvercurrentArchive& archive)
{
    std::string text;
    const auto tell = [&text](bool isLost, const char* key) {
        if (isLost)
            text += (text.empty() ? "" : "\n") + std::string(lng::Overcurrent::get(key));
    };
    tell(archive.areResultsLost, "Repair.resultsLost");
    tell(archive.isOriginLost, "Repair.originLost");
    tell(archive.isPlanLost, archive.results ? "Repair.planOfTest" : "Repair.planLost");
    return text;
}

} // namespace

OvercurrentModel::OvercurrentModel() : _testObject(Nodes::overcurrentStage())
{
    // A one-ampere relay: a device can put out twenty times its setting.
    const RelaySettings settings;
    (void)_testObject->find(Nodes::SettingCurrent)->setValue(settings.settingCurrent);
    (void)_testObject->find(Nodes::NominalCurrent)->setValue(settings.nominalCurrent);
    _defaultSettings = _testObject->serialize();
    _testObject->signalChanged.connect([this](KesTree::Node&) { signalPlanChanged.emit(); });
    _setCanProgramStart(true);
}

OvercurrentModel::~OvercurrentModel() = default;

Kes::Result OvercurrentModel::setPlan(const TestPlan& plan)
{
    if (auto result = plan.check(); !result)
        return result;
    if (_plan != plan) {
        _plan = plan;
        signalPlanChanged.emit();
    }
    return true;
}

std::optional<TestResults> OvercurrentModel::getResults() const
{
    std::lock_guard lock(_resultsMutex);
    return _results;
}

bool OvercurrentModel::isResultStale() const
{
    const auto results = getResults();
    return results && (results->plan != _plan || results->settings != getSettings());
}

bool OvercurrentModel::isUntouched() const
{
    return !getResults() && _planError.empty() && _plan == TestPlan() &&
           _testObject->serialize() == _defaultSettings;
}

void OvercurrentModel::announceOutcome()
{
    if (isRunning())
        return;
    const auto results = getResults();
    _announce(results ? TestOutcome::create(&*results).text : std::string(),
              results ? results->origin : Origin::Device);
}

void OvercurrentModel::_announce(const std::string& text, Origin origin)
{
    using lng::Measure::get;
    const char* const title = get(origin == Origin::Unknown ? "Unknown.title" : "Simulated.title");
    _setState(origin == Origin::Device
                  ? text
                  : Kes::StringHelper::format(get("Simulated.state"), text, std::string(title)));
}

Kes::Result OvercurrentModel::writeReport(const std::string& path)
{
    const auto results = getResults();
    const auto data = results ? ReportDocument::create(results->settings, results->plan, &*results)
                              : ReportDocument::create(getSettings(), _plan, nullptr, _areResultsLost);
    return KesMeasure::ReportFile::write(path, data, "report/overcurrent.xsl");
}

std::string OvercurrentModel::getProgramName()
{
    return "Overcurrent";
}

std::string OvercurrentModel::getExtension()
{
    return "kovc";
}

KesTree::Node* OvercurrentModel::getTestObject()
{
    return _testObject.get();
}

RunVerdict OvercurrentModel::getRunVerdict()
{
    return _verdict;
}

std::string OvercurrentModel::createReport()
{
    const std::string folder = Kes::getKesCrossDocDir();
    Kes::mkdir_with_parents(folder);
    const std::string path = folder + "report.html";
    return writeReport(path) ? path : std::string();
}

void OvercurrentModel::newData(const std::string&)
{
    _abandonRun();
    (void)_testObject->deserialize(_defaultSettings);
    _replaceData(OvercurrentArchive());
}

std::unique_ptr<std::istream> OvercurrentModel::getDataStream()
{
    return OvercurrentArchive{_testObject->serialize(), _plan, getResults()}.pack();
}

bool OvercurrentModel::setDataStream(std::istream& stream, bool flag)
{
    if (flag)
        return setRepairDataStream(stream);
    const auto archive = OvercurrentArchive::read(stream);
    if (!archive || !_testObject->deserialize(archive->settings))
        return false;
    _load(*archive);
    return true;
}

bool OvercurrentModel::setRepairDataStream(std::istream& stream)
{
    const auto archive = OvercurrentArchive::repair(stream);
    if (!archive)
        return false;
    const std::string former = _testObject->serialize();
    const char* const settingsKey = _repairSettings(*archive);
    if (settingsKey == settingsLostKey && archive->isPlanLost && !archive->results) {
        // Nothing is left of the file.
        (void)_testObject->deserialize(former);
        return false;
    }
    _load(*archive);
    std::string text = lossText(*archive);
    if (settingsKey)
        text += (text.empty() ? "" : "\n") + std::string(lng::Overcurrent::get(settingsKey));
    if (!text.empty())
        signalMessage.emit(text);
    return true;
}

const char* OvercurrentModel::_repairSettings(const OvercurrentArchive& archive)
{
    // What the file does not hold becomes that of its test or the default, not what the last file held.
    (void)_testObject->deserialize(_defaultSettings);
    const bool isOfTest = archive.results && archive.results->settings.putInto(*_testObject);
    if (archive.results && !isOfTest)
        (void)_testObject->deserialize(_defaultSettings);
    if (_testObject->deserialize(archive.settings))
        return nullptr;
    if (_testObject->deserialize(archive.settings, false))
        return "Repair.settingsPartly";
    return isOfTest ? "Repair.settingsOfTest" : settingsLostKey;
}

void OvercurrentModel::_load(const OvercurrentArchive& archive)
{
    _abandonRun();
    _replaceData(archive);
}

void OvercurrentModel::_abandonRun()
{
    {
        std::lock_guard lock(_resultsMutex);
        _isRunKept = false;
    }
    if (isRunning()) {
        stopTest();
        signalMessage.emit(lng::Overcurrent::get("Run.archiveReplaced"));
    }
}

void OvercurrentModel::_replaceData(const OvercurrentArchive& archive)
{
    _plan = archive.plan;
    _planError.clear();
    _areResultsLost = archive.areResultsLost;
    {
        std::lock_guard lock(_resultsMutex);
        _results = archive.results;
    }
    _progress = 0.0;
    signalPlanChanged.emit();
    signalResultsChanged.emit();
    announceOutcome();
}

} // namespace Overcurrent
