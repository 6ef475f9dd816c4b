#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommonView/DialogBackend.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesProgram/model/RunVerdict.h>
#include <KesProgram/shell/CommandLine.h>

#include <sigc++/sigc++.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace KesProgram {

class ProgramBasePresenter;
class ProgramModel;
class WindowPicture;

/// Does what the command line asks for without a user: opens the file, runs the test, writes archive, report,
/// results and picture, and closes the program.
///
/// Without a file it begins with a new document, whatever was open last. Until all is done, messages go to
/// standard error and questions get their declining answer; afterwards, without "--quit", the window is the
/// user's. A test that was not started writes no files; one that was stopped or ended by a fault writes what
/// it has measured. A report or results that the program cannot write keep it from starting: nobody wants to
/// hear of that after hours. Whatever fails, throws or ends the program meanwhile, the run comes to its end
/// with a status that says so.
///
/// Owned by `ProgramMain`; lives while the window does. GUI thread.
class KES_EXPORT UnattendedRun : public sigc::trackable {
public:
    /// The exit statuses of a program.
    enum Status {
        /// Everything measured and within tolerance, every file written.
        Success = 0,
        /// Something measured lies outside its tolerance, or could not be measured.
        OutOfTolerance = 1,
        /// The test, or the program, was not started; the reason is on standard error.
        NotStarted = 2,
        /// A fault ended the test, or a file could not be read or written.
        Failure = 3,
        Stopped = 4
    };

    /// Writes the report to a path.
    using WriteReport = std::function<Kes::Result(const std::string&)>;

    /// The model and the presenter outlive it. Without a function the model's `createReport` is asked, and
    /// its file copied.
    UnattendedRun(const CommandLine& commandLine, ProgramModel& model, ProgramBasePresenter& presenter,
                  WriteReport writeReport);
    ~UnattendedRun();
    UnattendedRun(const UnattendedRun&) = delete;
    UnattendedRun& operator=(const UnattendedRun&) = delete;

    /// Begins, once, when the window has been opened. Returns at once.
    void begin();
    /// The process is to end: stops the test, writes the files, and closes the program.
    void terminate();
    /// The display has gone, and the main loop does not turn any more: writes archive, report and results at
    /// once, and returns the status to end with. Touches no widget.
    Status endWithoutDisplay();

    /// Whether the window is the user's.
    bool isDone() const { return _phase == Phase::Done; }
    /// The program's exit status; meaningful once all is done or the window has been closed.
    Status getStatus() const { return _status; }
    /// Something failed elsewhere: the exit status becomes `Failure` unless it is worse already.
    void reportFailure() { _addFailure(); }

private:
    using Step = void (UnattendedRun::*)();
    enum class Phase {
        Opening,
        /// From the request to start until the end of the test has been heard.
        Testing,
        Writing,
        Closing,
        /// The window is the user's.
        Done
    };

    void _later(Step step);
    /// An exception of a step is reported and makes the status a failure; the run continues after the step.
    void _run(Step step);
    void _goOnAfterFailure();
    void _hearEnd(bool outputStarted);
    bool _lookForEnd();
    void _onWindowShown();
    Kes::Result _checkFiles();
    bool _openFile();
    void _startTest();
    void _onFinished();
    void _stopWanted();
    void _writeFiles();
    void _writeData();
    void _takeScreenshot();
    void _complete();
    void _close();

    void _write(const std::string& path, Kes::Result (UnattendedRun::*write)());
    Kes::Result _save();
    Kes::Result _report();
    Kes::Result _results();
    Kes::Result _screenshot();
    void _addFailure();
    void _notStarted();

    const CommandLine _commandLine;
    ProgramModel& _model;
    ProgramBasePresenter& _presenter;
    const WriteReport _writeReport;
    std::unique_ptr<Kes::DialogBackend> _userDialogs;
    Status _status = Success;
    Phase _phase = Phase::Opening;
    bool _isTerminating = false;
    std::unique_ptr<WindowPicture> _picture;
    /// What `signalFinished` has reported on another thread and is not handled yet.
    enum class End { None, Failed, Finished };
    std::atomic<End> _end{End::None};
    bool _isEndLate = false;
    sigc::connection _endWatch;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _finishedConnection;
    Kes::ScopedConnection _runningConnection;
};

} // namespace KesProgram
