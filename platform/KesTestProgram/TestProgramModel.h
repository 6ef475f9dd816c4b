#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>
#include <KesDevice/Kesto.h>
#include <KesDriver/Outputs.h>
#include <KesMeasure/EmbeddedBench.h>
#include <KesMeasure/MeasuredTest.h>
#include <KesMeasure/ResultFile.h>
#include <KesMeasure/RunClock.h>
#include <KesMeasure/RunControl.h>
#include <KesMeasure/TextLine.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesTestProgram/LoadedArchive.h>
#include <KesTestProgram/ShownTest.h>

#include <giomm/cancellable.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace KesTestProgram {

/// What a run is to the results.
enum class RunKind {
    /// It begins new ones.
    Anew,
    /// It measures what has no result yet.
    Rest,
    /// It measures some values again.
    Again
};

/// The model of a test program: the test object, the run and what the user hears of it, and the archive file
/// with its repair. The derived class says what is measured and what it means, and keeps the results;
/// `ResultsModel` does so for results of any type. The name of the most derived class is that of the
/// program's configuration file.
///
/// GUI thread, except as noted; the run happens on the start thread with the settings it began with.
class KES_EXPORT TestProgramModel : public KesProgram::ProgramModel {
public:
    /// The results, or whether there are any, have changed. On the thread that changed them.
    Kes::Signal<void()> signalResultsChanged;
    /// The share of the run that is over has changed. Start thread.
    Kes::Signal<void()> signalProgressChanged;
    /// A setting of the test object, or the plan beside it, has changed. GUI thread.
    sigc::signal<void()> signalSettingsChanged;

    /// Asked before a test replaces results that are in no file, however their test ended; false: it does not
    /// start. Without it nobody is asked. GUI thread.
    std::function<bool()> confirmReplacing;
    /// Asked first when the test before could be continued; nothing: none starts. Without it a new one does.
    /// GUI thread.
    std::function<std::optional<RunKind>()> chooseStart;

    /// The tree has the values of a new archive.
    explicit TestProgramModel(std::unique_ptr<KesTree::Node> testObject);
    ~TestProgramModel() override;

    /// The simulated bench's speed factor.
    void setSpeed(double factor) { _bench.setSpeed(factor); }

    /// Why what the user is writing is no plan; while it is not empty, no test starts, and the last valid
    /// plan is the one that is saved.
    void setPlanError(const std::string& text);
    const std::string& getPlanError() const { return _planError; }

    /// Whether the file held results that could not be read; of no meaning once there are results.
    bool areResultsLost() const { return _areResultsLost; }
    /// From 0 to 1. Any thread.
    double getProgress() const { return _progress; }
    /// How long the run is still expected to take, in seconds. Any thread.
    double getRemaining() const { return _remaining; }

    /// As `startTest`, but measures only what a test that ended early has no result of. A run like any other,
    /// with the settings, the plan and the device of the results, which are kept.
    bool continueTest();
    /// The same for rows of the result table that are measured; each keeps its result until it has a new one.
    bool repeatTest(std::vector<std::size_t> rows);
    /// Why the one or the other is not possible now, as a text for the user; empty when it is.
    std::string whyNotContinue();
    std::string whyNotRepeat();
    /// Whether the data is that of a new archive: nothing would be lost with it.
    virtual bool isUntouched() const;

    /// End and circumstances of the test; nothing before the first one. Any thread.
    virtual std::optional<KesMeasure::MeasuredTest> getMeasuredTest() const = 0;
    /// Whether the results were measured with other settings than the present ones.
    virtual bool isResultStale() const = 0;
    /// The present settings, as people read them.
    virtual std::vector<KesMeasure::TextLine> describeSettings() const = 0;
    /// The results, or what a test with the present settings would measure.
    virtual ShownTest getShownTest() const = 0;

    /// Puts how the last test ended into the state text, with a warning when its device was simulated.
    void announceOutcome();

    /// Writes the report of the present data; the file appears whole or not at all. PDF if the path ends so,
    /// which takes seconds, else HTML.
    Kes::Result writeReport(const std::string& path);
    /// The same for another thread: takes the data at once, and writes when it is called; see `ReportFile`.
    using ReportWriter = std::function<Kes::Result(const Glib::RefPtr<Gio::Cancellable>&)>;
    ReportWriter prepareReport(const std::string& path);

    void newData(const std::string& fileName) override;
    bool setDataStream(std::istream& stream, bool flag) override;
    bool setRepairDataStream(std::istream& stream) override;
    KesTree::Node* getTestObject() override { return _testObject.get(); }
    Kes::Result checkResultsFile(const std::string& path) override;
    Kes::Result writeResults(const std::string& path) override;
    KesProgram::RunVerdict getRunVerdict() override { return _verdict; }

protected:
    /// How a run ended, and a text for the user when it needs one; else empty.
    struct RunResult {
        KesMeasure::RunEnd end = KesMeasure::RunEnd::Fault;
        std::string error;
    };

    // What a program does, beside `getDataStream`.

    /// Takes over settings and plan for the run that begins. The failure says why they make no test.
    virtual Kes::Result _prepareTest() = 0;
    /// Whether a device with these limits can make the test. Start thread.
    virtual Kes::Result _checkLimits(const KesDriver::OutputLimits& limits) const = 0;
    /// The test object for the simulated bench: at rest, set as the run's settings say. Start thread.
    virtual std::shared_ptr<KesDriver::ISimulatedTestObject> _makeBenchObject() const = 0;
    /// Makes the measurements with these numbers, in their order, from 0 on in the order of a whole test;
    /// those up to the number of rows of the result table are the rows. Start thread.
    virtual RunResult _runTest(KesDevice::Kesto& kesto, KesMeasure::RunControl& control,
                               const std::vector<std::size_t>& order) = 0;

    /// What has been read of a file; nothing when it holds anything but a complete archive that makes sense,
    /// or, to be repaired, nothing of one.
    virtual std::optional<LoadedArchive> _readArchive(std::istream& stream, bool isRepair) = 0;
    /// Everything but the settings as in a new archive.
    virtual void _clearData() = 0;
    /// For the report's stylesheet, and its name in the data directory.
    virtual std::string _createReportData() const = 0;
    virtual std::string _getStylesheet() const = 0;
    /// The program as its files name it, such as "kes-overcurrent".
    virtual std::string _getProgramId() const = 0;

    /// What a run does to the results: begins new ones, continues with those that it has been given
    /// (false: their archive has been closed since), and ends them with their verdict; nothing when there are
    /// none any more. Start thread.
    virtual void _beginResults(const KesMeasure::MeasuredTest& test) = 0;
    virtual bool _resumeResults(const KesMeasure::MeasuredTest& test) = 0;
    /// The results that there are belong to the run that begins. GUI thread.
    virtual void _keepResults() = 0;
    virtual std::optional<KesMeasure::Verdict> _endResults(KesMeasure::RunEnd end) = 0;
    /// The archive that a run belongs to is closed: its results have no place any more.
    virtual void _abandonResults() = 0;
    /// Adds verdict, circumstances and checksum of the results, if there are any.
    virtual void _summarizeResults(KesMeasure::TestSummary& summary) const = 0;
    /// How many values have been measured: the first ones of a whole test.
    virtual std::size_t _countMeasured() const = 0;
    /// How many the test of the results has.
    virtual std::size_t _countPlanned() const = 0;

    /// Reports where the run is: the text for the user and the times. A report too soon after the last one to
    /// be read is left out. Start thread.
    void _announceStep(const std::string& text, const KesMeasure::RunTimes& times);

    bool _onPrepareStart() override;
    bool _onPrepareHardware() override;
    void _onStart() override;
    void _onStop() override;

    const KesTree::Node& _getTree() const { return *_testObject; }
    /// What has been filled in of the test object's nameplate.
    std::vector<KesMeasure::TextLine> _describeNameplate() const;

private:
    /// The state text, with a warning unless the device is known to be a real one. Any thread.
    void _announce(const std::string& text, KesMeasure::Origin origin);
    bool _hasUnsavedTest();
    bool _start(RunKind kind, std::vector<std::size_t> rows);
    /// Asks the user what to do with the results that there are.
    bool _chooseKind();
    std::string _whyResultsStay() const;
    bool _isSameDevice();
    bool _beginRun(const KesMeasure::MeasuredTest& test);
    RunResult _run(KesDevice::Kesto& kesto);
    std::vector<std::size_t> _getOrder() const;
    KesMeasure::RunEnd _judgeEnd(KesMeasure::RunEnd end) const;
    bool _accept(const Kes::Result& result);
    std::shared_ptr<KesDevice::Kesto> _getKesto();
    void _endRun(KesMeasure::RunEnd end);
    void _abandonRun();
    void _replaceData(const std::function<void()>& take, bool areResultsLost);
    /// Puts the best settings that there are into the test object. Null, or the text about what was lost.
    const char* _repairSettings(const LoadedArchive& archive);

    std::unique_ptr<KesTree::Node> _testObject;
    std::string _defaultSettings;
    std::string _planError;
    bool _areResultsLost = false;
    KesMeasure::EmbeddedBench _bench;
    KesMeasure::RunControl _control;
    std::atomic<double> _progress{0.0};
    std::atomic<double> _remaining{0.0};
    /// What is asked of the next run.
    RunKind _nextKind = RunKind::Anew;
    /// Of the present run; written before its thread is made.
    RunKind _kind = RunKind::Anew;
    std::vector<std::size_t> _rows;
    std::chrono::steady_clock::time_point _announcedAt{};
    std::atomic<KesProgram::RunVerdict> _verdict{KesProgram::RunVerdict::None};
};

} // namespace KesTestProgram
