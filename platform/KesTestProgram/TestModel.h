#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>
#include <KesMeasure/EmbeddedBench.h>
#include <KesMeasure/MeasurementRun.h>
#include <KesMeasure/RunControl.h>
#include <KesMeasure/TestRecord.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesTestProgram/TestKind.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace KesTestProgram {

struct TestArchive;

/// A test with the settings it had, and what has been measured.
struct TestInView {
    /// Never null.
    std::shared_ptr<const KesMeasure::ITestDefinition> test;
    /// Nothing before the first test.
    std::optional<KesMeasure::TestRecord> record;

    const KesMeasure::TestRecord* getRecord() const { return record ? &*record : nullptr; }
};

/// The model of a test program whose test is a list of measurements: the test object, the run and its
/// results, and the archive that keeps them. A program derives a class of its own, after which its
/// configuration file is named, and hands in what is particular to it.
///
/// GUI thread, except as noted; the run happens on the start thread with the settings it began with.
class KES_EXPORT TestModel : public KesProgram::ProgramModel, private KesMeasure::IMeasurementListener {
public:
    /// The results, or whether there are any, have changed. On the thread that changed them.
    Kes::Signal<void()> signalResultsChanged;
    /// The share of the run that is over has changed. Start thread.
    Kes::Signal<void()> signalProgressChanged;
    /// A setting of the test object has changed. GUI thread.
    sigc::signal<void()> signalSettingsChanged;

    /// Asked before a test replaces results that are in no file, however their test ended; false: it does not
    /// start. Without it nobody is asked. GUI thread.
    std::function<bool()> confirmReplacing;

    explicit TestModel(TestKind kind);
    ~TestModel() override;

    /// The simulated bench's speed factor.
    void setSpeed(double factor) { _bench.setSpeed(factor); }

    /// The test of the results, or with the present settings when there are none.
    TestInView getTestInView() const;
    /// The test with the present settings.
    std::shared_ptr<const KesMeasure::ITestDefinition> createTest() const;
    /// Whether the file held results that could not be read; of no meaning once there are results.
    bool areResultsLost() const { return _areResultsLost; }
    /// From 0 to 1. Any thread.
    double getProgress() const { return _progress; }
    /// Whether the results were measured with other settings than the present ones.
    bool isResultStale() const;
    /// Whether the data is that of a new archive: nothing would be lost with it.
    bool isUntouched() const;

    /// Puts how the last test ended into the state text, with a warning when its device was simulated.
    void announceOutcome();

    /// Writes the report of the present data; the file appears whole or not at all.
    Kes::Result writeReport(const std::string& path);

    std::string getProgramName() override { return _kind.name; }
    std::string getExtension() override { return _kind.extension; }
    void newData(const std::string& fileName) override;
    std::unique_ptr<std::istream> getDataStream() override;
    bool setDataStream(std::istream& stream, bool flag) override;
    bool setRepairDataStream(std::istream& stream) override;
    KesTree::Node* getTestObject() override { return _testObject.get(); }
    std::string createReport() override;
    KesProgram::RunVerdict getRunVerdict() override { return _verdict; }
    std::string getDataSummary() override;

protected:
    bool _onPrepareStart() override;
    bool _onPrepareHardware() override;
    void _onStart() override;
    void _onStop() override;

private:
    using Test = TestKind::Test;

    void onMeasurement(std::size_t index, double progress) override;
    void onReading(const KesMeasure::Reading& reading) override;

    std::optional<KesMeasure::TestRecord> _getRecord() const;
    /// The state text, with a warning unless the device is known to be a real one. Any thread.
    void _announce(const std::string& text, KesMeasure::Origin origin);
    bool _hasUnsavedTest();
    std::shared_ptr<KesDevice::Kesto> _getKesto();
    Kes::Result _checkLimits();
    void _beginRecord(const KesDevice::Kesto& kesto);
    void _endRecord(KesMeasure::RunEnd end);
    void _changeRecord(const std::function<void(KesMeasure::TestRecord&)>& change);
    void _abandonRun();
    void _load(const TestArchive& archive);
    void _replaceData(const TestArchive& archive);
    /// Puts the best settings that there are into the test object. Null, or the text about what was lost.
    const char* _repairSettings(const TestArchive& archive);

    const TestKind _kind;
    std::unique_ptr<KesTree::Node> _testObject;
    std::string _defaultSettings;
    bool _areResultsLost = false;
    KesMeasure::EmbeddedBench _bench;
    KesMeasure::RunControl _control;
    std::atomic<double> _progress{0.0};
    std::atomic<KesProgram::RunVerdict> _verdict{KesProgram::RunVerdict::None};

    /// Of the present run; written before its thread is made.
    std::string _runSettings;
    Test _runTest;
    KesMeasure::MeasurementPlan _runPlan;

    mutable std::mutex _recordMutex;
    std::optional<KesMeasure::TestRecord> _record;
    Test _recordTest;
    /// False once the archive that a run belongs to has been closed: its results have no place any more.
    bool _isRunKept = false;
};

} // namespace KesTestProgram
