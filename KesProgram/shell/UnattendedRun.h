#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommonView/DialogBackend.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesProgram/model/RunVerdict.h>
#include <KesProgram/shell/CommandLine.h>

#include <sigc++/sigc++.h>

#include <functional>
#include <memory>
#include <string>

namespace KesProgram {

class ProgramBasePresenter;
class ProgramModel;

/// Does what the command line asks for without a user: opens the file, runs the test, writes archive, report
/// and picture, and closes the program.
///
/// Without a file it begins with a new document, whatever was open last. Until all is done, messages go to
/// standard error and questions get their declining answer; afterwards, without "--quit", the window is the
/// user's. A test that was not started writes no files; one that was stopped or ended by a fault writes what
/// it has measured.
///
/// Owned by `ProgramMain`; lives while the window does. GUI thread.
class KES_EXPORT UnattendedRun : public sigc::trackable {
public:
    /// The exit statuses of a program.
    enum Status {
        /// Every point measured and within tolerance, every file written.
        Success = 0,
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

    bool isDone() const { return _isDone; }
    /// The program's exit status; meaningful once all is done or the window has been closed.
    Status getStatus() const { return _status; }
    /// A file error that happened elsewhere.
    void reportFileError() { _addFileError(); }

private:
    void _later(void (UnattendedRun::*step)());
    void _onWindowShown();
    bool _openFile();
    void _startTest();
    void _onFinished(bool outputStarted);
    void _stopWanted();
    void _writeFiles();
    void _takeScreenshot();
    void _whenDrawn(void (UnattendedRun::*step)());
    void _complete();
    void _close();

    void _write(const std::string& path, const std::function<Kes::Result()>& write);
    Kes::Result _save();
    Kes::Result _report();
    Kes::Result _screenshot();
    void _addFileError();
    void _notStarted();

    const CommandLine _commandLine;
    ProgramModel& _model;
    ProgramBasePresenter& _presenter;
    const WriteReport _writeReport;
    std::unique_ptr<Kes::DialogBackend> _userDialogs;
    Status _status = Success;
    bool _isTestUnderWay = false;
    bool _isTerminating = false;
    bool _isDone = false;
    int _drawnFrames = 0;
    sigc::connection _drawConnection;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _finishedConnection;
    Kes::ScopedConnection _runningConnection;
};

} // namespace KesProgram
