#pragma once

#include <Overcurrent/data/TestPlan.h>
#include <Overcurrent/data/TestResults.h>
#include <Overcurrent/run/TestRun.h>

#include <KesTestProgram/ResultsModel.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Overcurrent {

/// The model of the program: what the test of an overcurrent relay has beside its test object, the plan, and
/// what it makes of both. Threads as its base class says; the run has copies of the settings and the plan.
///
/// Its test is no list of measurements with a band each: points depend on the characteristic, ramps on each
/// other. What the results mean is in `Evaluation`, how a run measures in `TestRun`, what files hold in
/// `OvercurrentArchive`.
class OvercurrentModel : public KesTestProgram::ResultsModel<TestResults>, private ITestRunListener {
public:
    OvercurrentModel();
    ~OvercurrentModel() override;

    /// The values of the test object, read from its tree each time. GUI thread.
    RelaySettings getSettings() const { return RelaySettings::fromNode(_getTree()); }
    /// Always one that makes sense by itself (`TestPlan::check`); whether it suits the settings is found out
    /// at the start.
    const TestPlan& getPlan() const { return _plan; }
    /// Refuses a plan without sense, with the reason; the old one stays. A plan equal to the old one
    /// announces nothing. GUI thread.
    Kes::Result setPlan(const TestPlan& plan);

    /// Also when the plan is another one.
    bool isResultStale() const override;
    /// Plan and test object have the values of a new archive, and there is no result.
    bool isUntouched() const override;
    std::vector<KesMeasure::TextLine> describeSettings() const override;
    /// With the settings and the plan of the results as long as there are any, whatever the window has now.
    KesTestProgram::ShownTest getShownTest() const override;

    std::string getProgramName() override;
    std::string getExtension() override;
    std::unique_ptr<std::istream> getDataStream() override;
    std::string getDataSummary() override;

private:
    Kes::Result _prepareTest() override;
    Kes::Result _checkLimits(const KesDriver::OutputLimits& limits) const override;
    std::shared_ptr<KesDriver::ISimulatedTestObject> _makeBenchObject() const override;
    RunResult _runTest(KesDevice::Kesto& kesto, KesMeasure::RunControl& control,
                       const std::vector<std::size_t>& order) override;
    std::optional<KesTestProgram::LoadedArchive> _readArchive(std::istream& stream, bool isRepair) override;
    void _clearData() override;
    std::string _createReportData() const override;
    std::string _getStylesheet() const override;
    std::string _getProgramId() const override;
    TestResults _createResults() const override;
    KesMeasure::Verdict _judge(const TestResults& results) const override;
    std::string _toXml(const TestResults& results) const override;
    std::size_t _countMeasuredIn(const TestResults& results) const override;
    std::size_t _countPlannedIn(const TestResults& results) const override;

    void onPhase(const RunPhase& phase) override;
    /// A point that is measured again takes the place of the former result.
    void onPoint(std::size_t index, const PointResult& result) override;
    void onPickUp(const RampResult& result) override;
    void onDropOff(const RampResult& result) override;

    /// By those of another archive; announced by the base class.
    void _take(const TestPlan& plan, const std::optional<TestResults>& results);

    TestPlan _plan;

    /// Of the present run; written before its thread is made.
    RelaySettings _runSettings;
    TestPlan _runPlan;
    /// How warm the relay was after the last run, and when that was; start thread only.
    std::optional<KesMeasure::HeatBudget> _heat;
    std::chrono::steady_clock::time_point _heatAt{};
};

} // namespace Overcurrent
