#include <Overcurrent/model/OvercurrentModel.h>

#include <Overcurrent/bench/BenchRelay.h>
#include <Overcurrent/data/DataSummary.h>
#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/OvercurrentArchive.h>
#include <Overcurrent/data/ResultTexts.h>
#include <Overcurrent/data/ResultsXml.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/data/TestChart.h>
#include <Overcurrent/data/TestOutcome.h>
#include <Overcurrent/report/ReportDocument.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ScreenNumber.h>

namespace Overcurrent {

namespace {

using Kes::StringHelper::format;
using KesTestProgram::LoadedArchive;

/// A one-ampere relay: a device can put out twenty times its setting.
std::unique_ptr<KesTree::Node> makeTestObject()
{
    auto relay = KesTree::RelayNodes::overcurrentStage();
    (void)RelaySettings().putInto(*relay);
    return relay;
}

std::string nameOf(const RunPhase& phase)
{
    switch (phase.kind) {
    case RunPhase::Kind::PickUp:
        return lng::Overcurrent::get("Plan.pickUp");
    case RunPhase::Kind::DropOff:
        return lng::Overcurrent::get("Plan.dropOff");
    case RunPhase::Kind::Point:
        break;
    }
    return format(lng::Overcurrent::get("State.point"), phase.number, phase.count,
                  Faults::nameOf(phase.point.fault),
                  KesMeasure::ScreenNumber::multiple(phase.point.multiple));
}

std::string phaseText(const RunPhase& phase)
{
    if (phase.coolingSeconds <= 0.0)
        return nameOf(phase);
    return format(lng::Measure::get("Run.cooling"), nameOf(phase),
                  KesMeasure::ScreenNumber::shortest(phase.coolingSeconds));
}

} // namespace

OvercurrentModel::OvercurrentModel() : ResultsModel(makeTestObject()) {}

OvercurrentModel::~OvercurrentModel() = default;

Kes::Result OvercurrentModel::setPlan(const TestPlan& plan)
{
    if (auto result = plan.check(); !result)
        return result;
    if (_plan != plan) {
        _plan = plan;
        signalSettingsChanged.emit();
    }
    return true;
}

bool OvercurrentModel::isResultStale() const
{
    const auto results = getResults();
    return results && (results->plan != _plan || results->settings != getSettings());
}

bool OvercurrentModel::isUntouched() const
{
    return _plan == TestPlan() && ResultsModel::isUntouched();
}

std::vector<KesMeasure::TextLine> OvercurrentModel::describeSettings() const
{
    return SettingsSummary::describe(getSettings());
}

KesTestProgram::ShownTest OvercurrentModel::getShownTest() const
{
    const auto results = getResults();
    const auto* measured = results ? &*results : nullptr;
    return {TestOutcome::create(measured, areResultsLost()),
            TestChart::create(measured ? measured->settings : getSettings(),
                              measured ? measured->plan : _plan, measured),
            ResultTexts::createTable(measured ? *measured : resultsOf(getSettings(), _plan))};
}

std::string OvercurrentModel::getProgramName()
{
    return "Overcurrent";
}

std::string OvercurrentModel::getExtension()
{
    return "kovc";
}

std::string OvercurrentModel::getDataSummary()
{
    return DataSummary::text(getResults());
}

std::string OvercurrentModel::_createReportData() const
{
    const auto results = getResults();
    const auto nameplate = _describeNameplate();
    return results ? ReportDocument::create(results->settings, results->plan, &*results, false, nameplate)
                   : ReportDocument::create(getSettings(), _plan, nullptr, areResultsLost(), nameplate);
}

std::string OvercurrentModel::_getStylesheet() const
{
    return "report/test.xsl";
}

std::string OvercurrentModel::_getProgramId() const
{
    return OvercurrentArchive::program;
}

std::unique_ptr<std::istream> OvercurrentModel::getDataStream()
{
    OvercurrentArchive archive;
    archive.settings = _getTree().serialize();
    archive.plan = _plan;
    archive.results = getResults();
    return archive.pack();
}

std::optional<LoadedArchive> OvercurrentModel::_readArchive(std::istream& stream, bool isRepair)
{
    const auto archive = isRepair ? OvercurrentArchive::repair(stream) : OvercurrentArchive::read(stream);
    if (!archive)
        return std::nullopt;
    LoadedArchive loaded(*archive);
    if (archive->isPlanLost)
        loaded.otherLosses.push_back(
            lng::Overcurrent::get(archive->results ? "Repair.planOfTest" : "Repair.planLost"));
    loaded.isRestLost = archive->isPlanLost && !archive->results;
    if (archive->results)
        loaded.putSettingsOfTest = [settings = archive->results->settings](KesTree::Node& testObject) {
            return settings.putInto(testObject);
        };
    loaded.take = [this, archive = *archive] { _take(archive.plan, archive.results); };
    return loaded;
}

void OvercurrentModel::_clearData()
{
    _take(TestPlan(), std::nullopt);
}

void OvercurrentModel::_take(const TestPlan& plan, const std::optional<TestResults>& results)
{
    _plan = plan;
    _replaceResults(results);
}

Kes::Result OvercurrentModel::_prepareTest()
{
    _runSettings = getSettings();
    _runPlan = _plan;
    return _runPlan.check(_runSettings);
}

Kes::Result OvercurrentModel::_checkLimits(const KesDriver::OutputLimits& limits) const
{
    return _runPlan.check(_runSettings, limits);
}

std::shared_ptr<KesDriver::ISimulatedTestObject> OvercurrentModel::_makeBenchObject() const
{
    return makeBenchRelay(_runSettings, _runPlan);
}

OvercurrentModel::RunResult OvercurrentModel::_runTest(KesDevice::Kesto& kesto,
                                                       KesMeasure::RunControl& control,
                                                       const std::vector<std::size_t>& order)
{
    // Most likely it is still the same relay.
    KesMeasure::HeatBudget heat(_runSettings.getWithstand());
    const std::chrono::duration<double> rest = std::chrono::steady_clock::now() - _heatAt;
    if (_heat)
        heat.follow(*_heat, rest.count());
    TestRun run(_runSettings, _runPlan, kesto, control, *this, order, heat);
    const auto end = run.execute();
    _heat = run.getHeat();
    _heatAt = std::chrono::steady_clock::now();
    return {end, run.getError()};
}

TestResults OvercurrentModel::_createResults() const
{
    return resultsOf(_runSettings, _runPlan);
}

KesMeasure::Verdict OvercurrentModel::_judge(const TestResults& results) const
{
    return Evaluation::verdict(results);
}

std::string OvercurrentModel::_toXml(const TestResults& results) const
{
    return ResultsXml::toText(&results);
}

std::size_t OvercurrentModel::_countMeasuredIn(const TestResults& results) const
{
    return DataSummary::countMeasured(results);
}

std::size_t OvercurrentModel::_countPlannedIn(const TestResults& results) const
{
    return DataSummary::countPlanned(results);
}

void OvercurrentModel::onPhase(const RunPhase& phase)
{
    std::string text = phaseText(phase);
    if (phase.kind == RunPhase::Kind::Point && _runPlan.repetitions > 1)
        text = format(lng::Measure::get("Run.repetition"), text, phase.repetition, _runPlan.repetitions);
    _announceStep(text, phase.times);
}

void OvercurrentModel::onPoint(std::size_t index, const PointResult& result)
{
    _changeResults([&](TestResults& results) {
        if (index < results.points.size())
            results.points[index] = result;
        else
            results.points.push_back(result);
    });
}

void OvercurrentModel::onPickUp(const RampResult& result)
{
    _changeResults([&](TestResults& results) { results.pickUp = result; });
}

void OvercurrentModel::onDropOff(const RampResult& result)
{
    _changeResults([&](TestResults& results) { results.dropOff = result; });
}

} // namespace Overcurrent
