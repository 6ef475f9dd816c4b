#include <Overcurrent/model/OvercurrentModel.h>

#include <Overcurrent/data/Outcome.h>
#include <Overcurrent/data/OvercurrentArchive.h>
#include <Overcurrent/report/ReportFile.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>
#include <KesProgram/archive/ArchiveManager.h>

namespace Overcurrent {

namespace {

using KesProgram::RunVerdict;
namespace Nodes = KesTree::RelayNodes;

std::string lossText(const OvercurrentArchive& archive)
{
    using lng::Overcurrent::get;
    std::string text = archive.areResultsLost ? get("Repair.resultsLost") : "";
    if (archive.isPlanLost)
        text += (text.empty() ? "" : "\n") + std::string(get("Repair.planLost"));
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
    _announce(results ? Outcome::create(&*results).text : std::string(), results && results->isSimulated);
}

void OvercurrentModel::_announce(const std::string& text, bool isSimulated)
{
    using lng::Overcurrent::get;
    _setState(isSimulated ? Kes::StringHelper::format(get("Simulated.state"), text,
                                                      std::string(get("Simulated.title")))
                          : text);
}

Kes::Result OvercurrentModel::writeReport(const std::string& path)
{
    const ReportFile file(_getProgrammCacheDirectory());
    const auto results = getResults();
    return results ? file.write(path, results->settings, results->plan, &*results)
                   : file.write(path, getSettings(), _plan, nullptr, _areResultsLost);
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
    return archive && _load(*archive, true);
}

bool OvercurrentModel::setRepairDataStream(std::istream& stream)
{
    const auto archive = OvercurrentArchive::repair(stream);
    if (!archive)
        return false;
    // What the file does not hold becomes the default, not what the last file held.
    (void)_testObject->deserialize(_defaultSettings);
    if (!_load(*archive, false))
        return false;
    if (archive->isPlanLost || archive->areResultsLost)
        signalMessage.emit(lossText(*archive));
    return true;
}

bool OvercurrentModel::_load(const OvercurrentArchive& archive, bool complete)
{
    if (!_testObject->deserialize(archive.settings, complete))
        return false;
    _abandonRun();
    _replaceData(archive);
    return true;
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
