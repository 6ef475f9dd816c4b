#pragma once

#include <Overcurrent/data/DataSummary.h>
#include <Overcurrent/data/TestPlan.h>
#include <Overcurrent/data/TestResults.h>
#include <Overcurrent/run/TestRun.h>

#include <KesCommon/Signal.h>
#include <KesMeasure/EmbeddedBench.h>
#include <KesMeasure/RunControl.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesTree/Node.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace Overcurrent {

struct OvercurrentArchive;

/// The model of the program: the test object, the plan, the run and its results, and the archive that keeps
/// them.
///
/// GUI thread, except as noted; the run happens on the start thread with copies of the settings and the plan.
class OvercurrentModel : public KesProgram::ProgramModel, private ITestRunListener {
public:
    /// The results, or whether there are any, have changed. On the thread that changed them.
    Kes::Signal<void()> signalResultsChanged;
    /// The share of the run that is over has changed. Start thread.
    Kes::Signal<void()> signalProgressChanged;
    /// The plan or a setting of the test object has changed. GUI thread.
    sigc::signal<void()> signalPlanChanged;

    /// Asked before a test replaces results that are in no file, however their test ended; false: it does not
    /// start. Without it nobody is asked. GUI thread.
    std::function<bool()> confirmReplacing;

    OvercurrentModel();
    ~OvercurrentModel() override;

    /// The simulated bench's speed factor.
    void setSpeed(double factor) { _bench.setSpeed(factor); }

    RelaySettings getSettings() const { return RelaySettings::fromNode(*_testObject); }
    const TestPlan& getPlan() const { return _plan; }
    /// Refuses a plan without sense, with the reason; the old one stays.
    Kes::Result setPlan(const TestPlan& plan);
    /// Why what the user is writing is no plan; while it is not empty, no test starts.
    void setPlanError(const std::string& text) { _planError = text; }
    const std::string& getPlanError() const { return _planError; }

    /// A copy; nothing before the first test. Any thread.
    std::optional<TestResults> getResults() const;
    /// Whether the file held results that could not be read; of no meaning once there are results.
    bool areResultsLost() const { return _areResultsLost; }
    /// From 0 to 1. Any thread.
    double getProgress() const { return _progress; }
    /// Whether the results were measured with other settings or another plan than the present ones.
    bool isResultStale() const;
    /// Whether the data is that of a new archive: nothing would be lost with it.
    bool isUntouched() const;

    /// Puts how the last test ended into the state text, with a warning when its device was simulated.
    void announceOutcome();

    /// Writes the report of the present data; the file appears whole or not at all.
    Kes::Result writeReport(const std::string& path);

    std::string getProgramName() override;
    void newData(const std::string& fileName) override;
    std::unique_ptr<std::istream> getDataStream() override;
    bool setDataStream(std::istream& stream, bool flag) override;
    bool setRepairDataStream(std::istream& stream) override;
    std::string getExtension() override;
    KesTree::Node* getTestObject() override;
    std::string createReport() override;
    KesProgram::RunVerdict getRunVerdict() override;
    std::string getDataSummary() override { return DataSummary::text(getResults()); }

protected:
    bool _onPrepareStart() override;
    bool _onPrepareHardware() override;
    void _onStart() override;
    void _onStop() override;

private:
    void onPhase(const RunPhase& phase) override;
    void onPoint(const PointResult& result) override;
    void onPickUp(const RampResult& result) override;
    void onDropOff(const RampResult& result) override;

    /// The state text, with a warning unless the device is known to be a real one. Any thread.
    void _announce(const std::string& text, Origin origin);
    bool _hasUnsavedTest();
    std::shared_ptr<KesDevice::Kesto> _getKesto();
    void _beginResults(const KesDevice::Kesto& kesto);
    void _endResults(RunEnd end);
    void _abandonRun();
    void _replaceData(const OvercurrentArchive& archive);
    void _changeRunResults(const std::function<void(TestResults&)>& change);
    void _load(const OvercurrentArchive& archive);
    /// Puts the best settings that there are into the test object. Null, or the text about what was lost.
    const char* _repairSettings(const OvercurrentArchive& archive);

    std::unique_ptr<KesTree::Node> _testObject;
    std::string _defaultSettings;
    TestPlan _plan;
    std::string _planError;
    bool _areResultsLost = false;
    KesMeasure::EmbeddedBench _bench;
    KesMeasure::RunControl _control;
    std::atomic<double> _progress{0.0};
    std::atomic<KesProgram::RunVerdict> _verdict{KesProgram::RunVerdict::None};

    /// Of the present run; written before its thread is made.
    RelaySettings _runSettings;
    TestPlan _runPlan;

    mutable std::mutex _resultsMutex;
    std::optional<TestResults> _results;
    /// False once the archive that a run belongs to has been closed: its results have no place any more.
    bool _isRunKept = false;
};

} // namespace Overcurrent
