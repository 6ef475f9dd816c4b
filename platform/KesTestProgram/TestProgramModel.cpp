#include <KesTestProgram/TestProgramModel.h>

#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ReportFile.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesTreeRelay/Nameplate.h>

namespace KesTestProgram {

namespace {

using KesMeasure::Origin;

constexpr const char* settingsLostKey = "Repair.settingsLost";

/// What could not be read, a line for each.
std::string lossText(const LoadedArchive& archive, const char* settingsKey)
{
    std::string text;
    const auto tell = [&text](const std::string& line) { text += (text.empty() ? "" : "\n") + line; };
    if (archive.areResultsLost)
        tell(lng::TestProgram::get("Repair.resultsLost"));
    if (archive.isOriginLost)
        tell(lng::TestProgram::get("Repair.originLost"));
    for (const auto& line : archive.otherLosses)
        tell(line);
    if (settingsKey)
        tell(lng::TestProgram::get(settingsKey));
    return text;
}

} // namespace

TestProgramModel::TestProgramModel(std::unique_ptr<KesTree::Node> testObject)
    : _testObject(std::move(testObject)), _defaultSettings(_testObject->serialize())
{
    _testObject->signalChanged.connect([this](KesTree::Node&) { signalSettingsChanged.emit(); });
    _setCanProgramStart(true);
}

TestProgramModel::~TestProgramModel() = default;

void TestProgramModel::setPlanError(const std::string& text)
{
    if (text == _planError)
        return;
    _planError = text;
    signalSettingsChanged.emit();
}

bool TestProgramModel::isUntouched() const
{
    return !getMeasuredTest() && _planError.empty() && _testObject->serialize() == _defaultSettings;
}

void TestProgramModel::announceOutcome()
{
    if (isRunning())
        return;
    const auto test = getMeasuredTest();
    _announce(test ? getShownTest().outcome.text : std::string(), test ? test->origin : Origin::Device);
}

void TestProgramModel::_announce(const std::string& text, Origin origin)
{
    using lng::Measure::get;
    const char* const title = get(origin == Origin::Unknown ? "Unknown.title" : "Simulated.title");
    _setState(origin == Origin::Device
                  ? text
                  : Kes::StringHelper::format(get("Simulated.state"), text, std::string(title)));
}

Kes::Result TestProgramModel::writeReport(const std::string& path)
{
    return prepareReport(path)({});
}

TestProgramModel::ReportWriter TestProgramModel::prepareReport(const std::string& path)
{
    KesMeasure::ReportFile::Foot foot;
    if (const auto* archive = getArchiveManager())
        foot.file = archive->getFileName();
    foot.program = getProgramName() + " " + getPackageVersion();
    return [path, foot, data = _createReportData(),
            sheet = _getStylesheet()](const Glib::RefPtr<Gio::Cancellable>& cancellable) {
        return KesMeasure::ReportFile::write(path, data, sheet, foot, cancellable);
    };
}

std::vector<KesMeasure::TextLine> TestProgramModel::_describeNameplate() const
{
    std::vector<KesMeasure::TextLine> lines;
    for (const auto& entry : KesTree::Nameplate::getFilled(*_testObject))
        lines.push_back({entry.name, entry.text});
    return lines;
}

Kes::Result TestProgramModel::checkResultsFile(const std::string& path)
{
    return KesMeasure::ResultFile::check(path);
}

Kes::Result TestProgramModel::writeResults(const std::string& path)
{
    const auto shown = getShownTest();
    KesMeasure::TestSummary summary;
    summary.program = _getProgramId();
    summary.outcome = shown.outcome.text;
    summary.table = shown.table;
    _summarizeResults(summary);
    for (const auto& entry : KesTree::Nameplate::getFilled(*_testObject))
        summary.nameplate.push_back({entry.id, entry.text});
    return KesMeasure::ResultFile::write(path, summary);
}

void TestProgramModel::newData(const std::string&)
{
    _abandonRun();
    (void)_testObject->deserialize(_defaultSettings);
    _replaceData([this] { _clearData(); }, false);
}

bool TestProgramModel::setDataStream(std::istream& stream, bool flag)
{
    if (flag)
        return setRepairDataStream(stream);
    const auto archive = _readArchive(stream, false);
    if (!archive || !_testObject->deserialize(archive->settings))
        return false;
    _abandonRun();
    _replaceData(archive->take, false);
    return true;
}

bool TestProgramModel::setRepairDataStream(std::istream& stream)
{
    const auto archive = _readArchive(stream, true);
    if (!archive)
        return false;
    const std::string former = _testObject->serialize();
    const char* const settingsKey = _repairSettings(*archive);
    if (settingsKey == settingsLostKey && archive->isRestLost) {
        // Nothing is left of the file.
        (void)_testObject->deserialize(former);
        return false;
    }
    _abandonRun();
    _replaceData(archive->take, archive->areResultsLost);
    if (const std::string text = lossText(*archive, settingsKey); !text.empty())
        signalMessage.emit(text);
    return true;
}

const char* TestProgramModel::_repairSettings(const LoadedArchive& archive)
{
    // What the file does not hold becomes that of its test or the default, not what the last file held.
    (void)_testObject->deserialize(_defaultSettings);
    const bool isOfTest = archive.putSettingsOfTest && archive.putSettingsOfTest(*_testObject);
    if (archive.putSettingsOfTest && !isOfTest)
        (void)_testObject->deserialize(_defaultSettings);
    if (_testObject->deserialize(archive.settings))
        return nullptr;
    if (_testObject->deserialize(archive.settings, false))
        return "Repair.settingsPartly";
    return isOfTest ? "Repair.settingsOfTest" : settingsLostKey;
}

void TestProgramModel::_abandonRun()
{
    _abandonResults();
    if (isRunning()) {
        stopTest();
        signalMessage.emit(lng::TestProgram::get("Run.archiveReplaced"));
    }
}

void TestProgramModel::_replaceData(const std::function<void()>& take, bool areResultsLost)
{
    _planError.clear();
    _areResultsLost = areResultsLost;
    take();
    _progress = 0.0;
    signalSettingsChanged.emit();
    signalResultsChanged.emit();
    announceOutcome();
}

} // namespace KesTestProgram
