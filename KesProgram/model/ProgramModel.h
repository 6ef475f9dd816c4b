#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>
#include <KesCommon/WaitCondition.h>
#include <KesCommon/Worker.h>
#include <KesDevice/HardwareManager.h>
#include <KesProgram/model/HelpName.h>
#include <KesProgram/model/RunVerdict.h>

#include <sigc++/sigc++.h>

#include <array>
#include <functional>
#include <istream>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace KesTree {
class Node;
}

namespace KesProgram {

class ArchiveManager;
class FileRecentManager;

/// The model of one test program: its state, its hardware, its test run and its data.
///
/// A concrete program derives its model from this class, implements the pure hooks and overrides those others
/// that it needs. The program owns the model; it creates it before the presenter's first `open` and destroys
/// it after `signalClosed`, on the GUI thread.
///
/// Threads: the GUI thread calls everything that is not marked otherwise. A run happens on the start thread
/// "KesProgram_Start", disconnecting without a run on "KesProgram_Disc", closing on the shutdown thread
/// "KesProgram_Shutdown", and the device library reports on its own threads. The model's signals are emitted
/// on whichever of these threads caused the change, after the change, without any lock but the signal gate; a
/// listener brings its view changes to the GUI thread. Only `signalClosed` always comes on the GUI thread.
/// The flags and the state text may be read on any thread.
///
/// No step of the model is skipped because a listener or a hook throws: the exception becomes a message.
/// Only what leaves `getCanStart` and `_onPrepareStart` reaches the caller of `startTest`.
/// The model shows nothing: texts for the user go out through `signalMessage`.
class KES_EXPORT ProgramModel : public sigc::trackable {
public:
    /// The hardware configuration was attached or has changed.
    Kes::Signal<void()> signalHardwareChanged;
    /// `getCanStart()` may have changed.
    Kes::Signal<void()> signalCanStartChanged;
    /// The running flag has changed.
    Kes::Signal<void()> signalCanStopChanged;
    /// Follows every `signalCanStopChanged` at once.
    Kes::Signal<void()> signalRunningChanged;
    /// A run has ended, or a start has failed. The argument: whether its output had been started.
    Kes::Signal<void(bool)> signalFinished;
    /// A text for the user. The reference is valid during the emission.
    Kes::Signal<void(const std::string&)> signalMessage;
    /// `getState()` has changed.
    Kes::Signal<void()> signalStateChanged;
    /// `close()` has stopped the run and begins the shutdown. GUI thread.
    Kes::Signal<void()> signalClosing;
    /// The shutdown has ended; the model may be destroyed after the emission. GUI thread.
    Kes::Signal<void()> signalClosed;

    ProgramModel();
    ProgramModel(const ProgramModel&) = delete;
    ProgramModel& operator=(const ProgramModel&) = delete;
    /// Waits for its threads. Destroy the model after `signalClosed`, when no hook is running any more.
    virtual ~ProgramModel() = 0;

    // Hooks. "Default" is what happens when a program does not override one.

    /// Called once, before the window is built; an override calls the base. Default: attaches the hardware
    /// and, with archive logic, opens the last archive.
    virtual void init();
    /// The program's name for titles, UTF-8. Default: empty.
    virtual std::string getProgramName();
    /// The path of the help file in the language of the process. Default: "Help/<language>/<program
    /// name>.pdf" beside the executable, else in the data that comes with the programs (`Kes::findDataFile`);
    /// without such a file, the family's general help, with a warning in the log.
    virtual std::string getHelpFileName();
    /// Whether a run can be started. Any thread. Default: the can-start flag, unless the hardware's output
    /// runs.
    virtual bool getCanStart();
    /// Begins an empty data set for the archive file of that path; an empty path: a new document. Default:
    /// nothing.
    virtual void newData(const std::string& fileName);
    /// The content of the archive file as it would be saved now, positioned at its beginning. A program with
    /// archive logic has to return a stream, the same bytes for the same data. When it throws, the file stays
    /// as it is. Also called once a second for the recovery copy, even while a test runs. Default: null.
    virtual std::unique_ptr<std::istream> getDataStream();
    /// Loads the content of an archive file. `flag`: repair, that is, take what can be read from damaged or
    /// outdated content. False refuses the content; `newData` then replaces the program's data. Default:
    /// reads nothing, true.
    virtual bool setDataStream(std::istream& stream, bool flag);
    /// For the program's own repair of a damaged file. Default: true.
    virtual bool setRepairDataStream(std::istream& stream);
    /// The extension of archive files, without dot. Empty: the program keeps no archive files. Default:
    /// "???".
    virtual std::string getExtension();
    /// One more extension that can be opened, without dot. Default: empty, none.
    virtual std::string getSupportedExtension();
    /// Whether the program keeps archive files. Default: true when the extension is not empty.
    virtual bool hasArchiveLogic();
    /// Whether the program has a hardware configuration of its own instead of the global one. Any thread;
    /// always the same answer. Default: false.
    virtual bool usesLocalHardware();
    /// The root of the test object, owned by the program. Default: null, no test object.
    virtual KesTree::Node* getTestObject();
    /// Writes the report and returns its path; an empty path is shown as an error. Default: empty.
    virtual std::string createReport();
    /// Whether `writeResults` can write a file of that name. The failure has a text for the user. Default: a
    /// failure, the program writes no results for other programs.
    virtual Kes::Result checkResultsFile(const std::string& path);
    /// Writes the results for other programs: the whole file or nothing. Default: fails as
    /// `checkResultsFile`.
    virtual Kes::Result writeResults(const std::string& path);

protected:
    /// The hardware configuration is new or has changed; null during `init`. On the thread that changed it.
    /// Default: nothing.
    virtual void _onHardwareChanged(KesDevice::HardwareManager* hardware);
    /// The last check before the start thread is made. GUI thread. False: no start. Default: true.
    virtual bool _onPrepareStart();
    /// Whether the program can use the active synchronisation mode. Start thread. Default: true when the mode
    /// supports sequences.
    virtual bool _isSupportedHardwareSync();
    /// Makes the hardware ready for the run. Start thread. False: no run. Default: checks, connects and
    /// switches on all devices, with all outputs at zero.
    virtual bool _onPrepareHardware();
    /// The test itself. Start thread. The output is on, at zero. It checks `isRunning()` to see whether it
    /// has been stopped; it, or something that it has started, calls `_finish()` exactly once. An exception
    /// that leaves it ends the run with a message.
    virtual void _onStart() = 0;
    /// The run has been stopped by the user, by a fault or by closing. On the thread that stopped it; after a
    /// fault under the signal gate. Must return at once and wait for nothing. Default: nothing.
    virtual void _onStop();
    /// Ends the use of the hardware. On the thread that calls `_finish()`. Default: switches all devices off,
    /// and disconnects them if that was requested; also called when an override has thrown.
    virtual void _onFinishHardware();
    /// The hardware is off. On the thread that calls `_finish()`. Default: nothing.
    virtual void _onFinished();
    /// The program is closing. GUI thread, after `_onStop()`. Default: nothing.
    virtual void _onClosing();

public:
    /// The result of the last run; the exit status of an unattended run depends on it. GUI thread, after
    /// `signalFinished`.
    virtual RunVerdict getRunVerdict() = 0;

    /// What the data holds, in a few words such as "8 results of 2026-11-20 14:05", for the question about
    /// work that was not saved. GUI thread. Default: empty.
    virtual std::string getDataSummary();

    /// Whether the program writes reports. Without them it has no Report button, and "--report" is refused
    /// before the test starts. GUI thread; always the same answer. Default: true.
    virtual bool hasReport();

    /// What the program is doing, for the status bar. Any thread; the reference is valid until the same
    /// thread asks again.
    const std::string& getState() const;
    /// Whether a run can be stopped. Any thread.
    bool getCanStop() const { return isRunning(); }
    /// Whether a run is under way and has not been stopped. Any thread.
    bool isRunning() const { return _getRun().isRunning(); }
    /// Whether the output of the current run has been started. Any thread.
    bool isOutputStarted() const { return _getRun().isOutputStarted(); }

    /// Whether a step of the last run has thrown: its verdict then counts for nothing. Any thread.
    bool hasRunFailed() const { return _getRun().hasFailed; }

    /// Null without archive logic and before `init`.
    ArchiveManager* getArchiveManager();
    /// Made on first use, for ten files.
    FileRecentManager* getFileRecentManager();

    void setPackageVersion(const std::string& version);
    const std::string& getPackageVersion() const;

    /// The hardware configuration in use, never null. Any thread. It lives at least until it is replaced,
    /// and, if a run has used it, until that run has ended.
    KesDevice::HardwareManager* getHardware();
    /// Uses this configuration from now on; the pointer is null afterwards. `flag`: as in
    /// `HardwareControl::setGlobalInstance`; without meaning for a configuration of the program's own.
    void setHardware(std::unique_ptr<KesDevice::HardwareManager>& hardware, bool flag);

    /// Begins a run; refused while the program is closing. True when the start thread has been made; the
    /// signals report whether the run succeeds.
    bool startTest();
    /// Stops the run; does nothing when there is none.
    void stopTest();
    /// Disconnects the hardware. A run whose output has started is stopped first, and disconnects at its end;
    /// without one, a thread of its own disconnects at once.
    void beginDisconnect();
    /// Switches all outputs off at once, whatever the program is doing, because the process may end soon:
    /// stops a run, refuses one that is being prepared, and sends the order to the devices on a thread of its
    /// own, without waiting for them. When the system has no more threads, the order is sent on this one.
    void switchOffAtOnce();

    /// Stops a run and begins the shutdown. Call it once.
    void close();

protected:
    /// Any thread; emits only on a real change.
    void _setState(const std::string& text);
    void _setCanProgramStart(bool canStart);
    void _setCanProgramStop(bool running);

    /// Ends a run: switches the hardware off and resets the flags. Start thread, or the thread on which the
    /// program ends its run, but not the GUI thread: it waits for the devices.
    void _finish();

    void _initArchiveManager();
    void _onArchiveManagerFileNameChanged();

    /// The program's own cache folder, named after the model class; ends with a separator.
    std::string _getProgrammCacheDirectory() const;

    std::unique_ptr<KesDevice::HardwareManager> _createProgramHardwareManager();
    /// Makes a configuration the program's own; it then holds no devices. Null is accepted.
    void _setLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware);
    void _attachHardwareManager();
    bool _checkHardware();

    void _onHardwareChangedImpl(KesDevice::HardwareManager* hardware);
    void _onHardwareIsRunningChanged(bool running);
    void _onHardwareStatusChanged(const char* text);
    void _onHardwareAvary(KesDriver::KesAvary& avary);

    void _startWorkingModeAndStarted();
    void _shutdown();

private:
    enum HardwareConnection { RunningConnection, StatusConnection, AvaryConnection, KestoStateConnection };

    /// All that decides about a run.
    struct ModelRunState {
        enum class Phase {
            Idle,
            /// Reported as running, with no output started.
            Announced,
            Running,
            /// Its test body has not ended yet.
            Stopped
        };
        Phase phase = Phase::Idle;
        bool canStart = false;
        /// `startTest` is on the stack, maybe serving the GUI thread's queue.
        bool isStarting = false;
        /// The devices are to be disconnected at its end.
        bool isDisconnecting = false;
        /// What is being prepared must not become a run.
        bool isRefused = false;
        bool hasFailed = false;
        bool isClosing = false;
        /// By `switchOffAtOnce`.
        bool isStopBeingTold = false;

        bool isRunning() const { return phase == Phase::Announced || phase == Phase::Running; }
        bool isOutputStarted() const { return phase == Phase::Running || phase == Phase::Stopped; }
        /// Each returns what was before.
        bool setRunning(bool running);
        bool setOutputStarted(bool started);
    };

    using SharedHardware = std::shared_ptr<KesDevice::HardwareManager>;

    ModelRunState _getRun() const;
    /// Changes it in one step; returns what the function returns. Nothing is emitted or called meanwhile.
    template <typename Change>
    auto _changeRun(Change change)
    {
        std::lock_guard lock(_runMutex);
        return change(_run);
    }
    SharedHardware _adoptLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware);
    SharedHardware _exchangeLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware);
    void _offerLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware);
    SharedHardware _shareHardware();
    SharedHardware _shareLocalHardware() const;
    /// What the present run has switched on; without one the configuration in use.
    SharedHardware _shareSwitchedOn();
    void _holdHardware();
    void _setIsHardwareHeld(bool held);
    bool _beginStart();
    void _waitForPreviousRun();
    bool _makeStartThread();
    bool _enterRunning();
    bool _isHardwareStillOn();
    void _finishRun();
    bool _prepareHardwareSafely();
    /// False, with the text as a message, when the hook has thrown: no hook may break a run off half-way or
    /// end the process from a thread.
    bool _runHook(void (ProgramModel::*hook)());
    template <typename Step>
    bool _runSafely(const Step& step)
    {
        try {
            step();
            return true;
        } catch (...) {
            _onStepThrown();
            return false;
        }
    }
    void _onStepThrown();
    void _disconnectOnRequest();
    void _disconnectInBackground();
    bool _inBackground(std::shared_ptr<Kes::Worker>& thread, const char* name,
                       SharedHardware (ProgramModel::*share)(),
                       const std::function<Kes::Result(KesDevice::HardwareManager&)>& operation);
    bool _stopRunning();
    void _tellStopped();
    bool _report(const Kes::Result& result);
    void _emitRunningChanged();
    void _onKestoState(KesDevice::Kesto* kesto, const char* text);
    void _onShutdown();
    void _leaveHardware();

    void _tellCurrentException() noexcept;

    mutable std::mutex _runMutex;
    ModelRunState _run;
    /// The threads that are in `_finish`. What is left of it belongs to the run that has ended.
    std::vector<std::thread::id> _finishing;
    Kes::WaitCondition _finished;
    Kes::WaitCondition _stopTold;

    mutable std::mutex _stateMutex;
    std::shared_ptr<const std::string> _state;

    Kes::Worker _startThread;
    Kes::Worker _shutdownThread;
    /// Shared: the next start waits for it on the start thread.
    std::shared_ptr<Kes::Worker> _disconnectThread;
    std::shared_ptr<Kes::Worker> _switchOffThread;
    std::mutex _closedMutex;
    unsigned _closedSource = 0;

    std::unique_ptr<ArchiveManager> _archiveManager;
    std::unique_ptr<FileRecentManager> _recentFiles;
    std::string _packageVersion;

    /// Guards the pointers alone: other threads ask for the configuration while the GUI thread replaces it.
    mutable std::mutex _hardwareMutex;
    SharedHardware _localHardware;
    /// What the present run may be using: the configuration that it began with, and those that came after.
    std::vector<SharedHardware> _heldHardware;
    bool _isHardwareHeld = false;
    /// What the present run has switched on; null when the program prepares its runs by itself.
    SharedHardware _runHardware;
    std::array<Kes::ScopedConnection, 4> _hardwareConnections;
    Kes::ScopedConnection _globalHardwareConnection;
};

} // namespace KesProgram
