#include <KesTestProgram/TestModel.h>

#include <KesTestProgram/TestArchive.h>
#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/OutputCheck.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/TestEvaluation.h>
#include <KesTreeRelay/Nameplate.h>

namespace KesTestProgram {

using KesMeasure::TestRecord;
namespace TestEvaluation = KesMeasure::TestEvaluation;

TestModel::TestModel(TestKind kind) : ResultsModel(kind.makeTestObject()), _kind(std::move(kind)) {}

TestModel::~TestModel() = default;

TestKind::Test TestModel::createTest() const
{
    return _kind.makeTest(_getTree());
}

TestInView TestModel::getTestInView() const
{
    if (const auto results = getResults())
        return {results->test, TestRecord(*results)};
    return {createTest(), std::nullopt};
}

bool TestModel::isResultStale() const
{
    const auto results = getResults();
    if (!results || results->settings == _getTree().serialize())
        return false;
    // Who and what was tested is often entered afterwards.
    const auto tested = _kind.makeTestObject();
    if (!tested->deserialize(results->settings))
        return true;
    KesTree::Nameplate::copy(_getTree(), *tested);
    return tested->serialize() != _getTree().serialize();
}

std::vector<KesMeasure::TextLine> TestModel::describeSettings() const
{
    return createTest()->describe();
}

ShownTest TestModel::getShownTest() const
{
    const auto shown = getTestInView();
    const auto* record = shown.getRecord();
    const auto plan = shown.test->createPlan();
    return {TestEvaluation::createOutcome(plan, record, areResultsLost()),
            TestEvaluation::createChart(plan, record),
            TestEvaluation::createTable(plan, record, shown.test->getRepetitions())};
}

std::string TestModel::getDataSummary()
{
    const auto results = getResults();
    return TestEvaluation::summarize(results ? &*results : nullptr);
}

std::string TestModel::_createReportData() const
{
    const auto shown = getTestInView();
    return TestEvaluation::createReport(_kind.reportTitle, *shown.test, shown.getRecord(), areResultsLost(),
                                        _describeNameplate());
}

std::unique_ptr<std::istream> TestModel::getDataStream()
{
    TestArchive archive;
    archive.settings = _getTree().serialize();
    archive.record = getResults();
    return archive.pack(_kind);
}

std::optional<LoadedArchive> TestModel::_readArchive(std::istream& stream, bool isRepair)
{
    const auto archive = isRepair ? TestArchive::repair(_kind, stream) : TestArchive::read(_kind, stream);
    if (!archive)
        return std::nullopt;
    LoadedArchive loaded(*archive);
    loaded.isRestLost = !archive->record;
    if (archive->record)
        loaded.putSettingsOfTest = [settings = archive->record->settings](KesTree::Node& testObject) {
            return testObject.deserialize(settings);
        };
    loaded.take = [this, record = archive->record] { _replaceResults(_withTest(record)); };
    return loaded;
}

std::optional<RecordedTest> TestModel::_withTest(const std::optional<TestRecord>& record) const
{
    if (!record)
        return std::nullopt;
    return RecordedTest{*record, _kind.makeTestOf(record->settings)};
}

Kes::Result TestModel::_prepareTest()
{
    _runSettings = _getTree().serialize();
    _runDefinition = createTest();
    if (auto result = _runDefinition->check(); !result)
        return result;
    _runPlan = _runDefinition->createPlan();
    return true;
}

Kes::Result TestModel::_checkLimits(const KesDriver::OutputLimits& limits) const
{
    for (const auto& planned : _runPlan)
        for (const auto& sequence : planned.sequences)
            if (auto result = KesDriver::checkSequence(sequence, limits); !result)
                return result;
    return true;
}

std::shared_ptr<KesDriver::ISimulatedTestObject> TestModel::_makeBenchObject() const
{
    return _runDefinition->makeTestObject();
}

TestModel::RunResult TestModel::_runTest(KesDevice::Kesto& kesto, KesMeasure::RunControl& control,
                                         const std::vector<std::size_t>& order)
{
    KesMeasure::MeasurementRun run(_runPlan, {order, _runDefinition->getRepetitions()}, kesto, control,
                                   *this);
    const auto end = run.execute();
    return {end, run.getError()};
}

RecordedTest TestModel::_createResults() const
{
    RecordedTest results;
    results.settings = _runSettings;
    results.test = _runDefinition;
    return results;
}

KesMeasure::Verdict TestModel::_judge(const RecordedTest& results) const
{
    return TestEvaluation::judge(results.test->createPlan(), results);
}

std::string TestModel::_toXml(const RecordedTest& results) const
{
    return results.getResultsXml(results.test->createPlan());
}

std::size_t TestModel::_countMeasuredIn(const RecordedTest& results) const
{
    return results.readings.size();
}

std::size_t TestModel::_countPlannedIn(const RecordedTest& results) const
{
    return results.test->createPlan().size();
}

void TestModel::onPosition(const KesMeasure::RunPosition& position)
{
    using Kes::StringHelper::format;
    const auto& planned = _runPlan[position.index];
    std::string text = format(lng::TestProgram::get("State.measurement"), position.index + 1, _runPlan.size(),
                              planned.object, planned.quantity);
    if (const unsigned count = _runDefinition->getRepetitions(); count > 1)
        text = format(lng::Measure::get("Run.repetition"), text, position.repetition, count);
    _announceStep(text, position.times);
}

void TestModel::onReading(std::size_t index, const KesMeasure::Reading& reading)
{
    _changeResults([&](RecordedTest& results) {
        if (index < results.readings.size())
            results.readings[index] = reading;
        else
            results.readings.push_back(reading);
    });
}

} // namespace KesTestProgram
