#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/MeasurementRun.h>
#include <KesMeasure/TestRecord.h>
#include <KesTestProgram/ResultsModel.h>
#include <KesTestProgram/TestKind.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace KesTestProgram {

/// A test with the settings it had, and what has been measured.
struct TestInView {
    /// Never null.
    TestKind::Test test;
    /// Nothing before the first test.
    std::optional<KesMeasure::TestRecord> record;

    const KesMeasure::TestRecord* getRecord() const { return record ? &*record : nullptr; }
};

/// What has been measured, and the test that its settings make.
struct RecordedTest : KesMeasure::TestRecord {
    /// Never null.
    TestKind::Test test;
};

/// The model of a test program whose test is a list of measurements. A program derives a class of its own and
/// hands in what is particular to it. Threads as its base class says.
///
/// Archive, report, table, chart, outcome and verdict follow from the measurements
/// (`KesMeasure::TestEvaluation`). A program whose test is more than values with their bands derives its
/// model from `ResultsModel` instead.
class KES_EXPORT TestModel : public ResultsModel<RecordedTest>, private KesMeasure::IMeasurementListener {
public:
    /// Makes the test object; its values are those of a new archive.
    explicit TestModel(TestKind kind);
    ~TestModel() override;

    /// The test of the results, or with the present settings when there are none. Test and record are of one
    /// moment.
    TestInView getTestInView() const;
    /// The test with the present settings, which may make no sense: `ITestDefinition::check` finds out.
    TestKind::Test createTest() const;

    /// Compares the settings without the nameplate: who and what was tested is often entered afterwards.
    bool isResultStale() const override;
    std::vector<KesMeasure::TextLine> describeSettings() const override;
    ShownTest getShownTest() const override;

    std::string getProgramName() override { return _kind.name; }
    std::string getExtension() override { return _kind.extension; }
    /// Settings and results; a test under way is written as a stopped one.
    std::unique_ptr<std::istream> getDataStream() override;
    std::string getDataSummary() override;

private:
    Kes::Result _prepareTest() override;
    Kes::Result _checkLimits(const KesDriver::OutputLimits& limits) const override;
    std::shared_ptr<KesDriver::ISimulatedTestObject> _makeBenchObject() const override;
    RunResult _runTest(KesDevice::Kesto& kesto, KesMeasure::RunControl& control,
                       const std::vector<std::size_t>& order) override;
    std::optional<LoadedArchive> _readArchive(std::istream& stream, bool isRepair) override;
    void _clearData() override { _replaceResults(std::nullopt); }
    std::string _createReportData() const override;
    std::string _getStylesheet() const override { return "report/measurements.xsl"; }
    std::string _getProgramId() const override { return _kind.program; }
    RecordedTest _createResults() const override;
    KesMeasure::Verdict _judge(const RecordedTest& results) const override;
    std::string _toXml(const RecordedTest& results) const override;
    std::size_t _countMeasuredIn(const RecordedTest& results) const override;
    std::size_t _countPlannedIn(const RecordedTest& results) const override;

    void onPosition(const KesMeasure::RunPosition& position) override;
    /// A value that is measured again takes the place of the former one.
    void onReading(std::size_t index, const KesMeasure::Reading& reading) override;

    std::optional<RecordedTest> _withTest(const std::optional<KesMeasure::TestRecord>& record) const;

    const TestKind _kind;

    /// Of the present run; written before its thread is made.
    std::string _runSettings;
    TestKind::Test _runDefinition;
    KesMeasure::MeasurementPlan _runPlan;
};

} // namespace KesTestProgram
