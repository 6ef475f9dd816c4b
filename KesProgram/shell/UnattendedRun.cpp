#include <KesProgram/shell/UnattendedRun.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/UnattendedDialogs.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/shell/WindowPicture.h>
#include <KesProgram/text/FileManagerLocalization.h>

#include <glibmm/main.h>

#include <cstdio>

namespace KesProgram {

namespace {

using Kes::StringHelper::format;

void tell(const std::string& text)
{
    std::fprintf(stderr, "%s\n", text.c_str());
}

void tellCurrentException() noexcept
{
    try {
        tell(Kes::getCurrentExceptionText());
    } catch (...) {
        std::fputs("out of memory\n", stderr);
    }
}

UnattendedRun::Status toStatus(RunVerdict verdict, bool isTerminating)
{
    switch (verdict) {
    case RunVerdict::Passed:
        return UnattendedRun::Success;
    case RunVerdict::Failed:
        return UnattendedRun::OutOfTolerance;
    case RunVerdict::Stopped:
        return UnattendedRun::Stopped;
    case RunVerdict::Fault:
    // Its own failure has ended the test before it had a verdict.
    case RunVerdict::None:
        break;
    }
    return isTerminating ? UnattendedRun::Stopped : UnattendedRun::Failure;
}

/// Whoever asks for the end of the program without saving does not want to be kept from it.
class QuittingDialogs : public Kes::UnattendedDialogs {
public:
    Kes::DialogResult showMessage(const Kes::MessageRequest& request) override
    {
        auto withoutCancel = request;
        if (request.buttons == Kes::DialogResult::YesNoCancel)
            withoutCancel.buttons = Kes::DialogResult::YesNo;
        return UnattendedDialogs::showMessage(withoutCancel);
    }
};

} // namespace

UnattendedRun::UnattendedRun(const CommandLine& commandLine, ProgramModel& model,
                             ProgramBasePresenter& presenter, WriteReport writeReport)
    : _commandLine(commandLine),
      _model(model),
      _presenter(presenter),
      _writeReport(std::move(writeReport)),
      _userDialogs(Kes::DialogBackend::install(std::make_unique<Kes::UnattendedDialogs>()))
{
    _finishedConnection =
        model.signalFinished.connect([this](bool outputStarted) { _hearEnd(outputStarted); });
    _runningConnection =
        model.signalRunningChanged.connect([this] { _guard.safeBeginUpdateView([this] { _stopWanted(); }); });
}

UnattendedRun::~UnattendedRun()
{
    _endWatch.disconnect();
    if (!isDone())
        Kes::DialogBackend::install(std::move(_userDialogs));
}

void UnattendedRun::begin()
{
    _endWatch = Glib::signal_timeout().connect_seconds(sigc::mem_fun(*this, &UnattendedRun::_lookForEnd), 1);
    _later(&UnattendedRun::_onWindowShown);
}

void UnattendedRun::_later(Step step)
{
    const auto run = sigc::bind(sigc::mem_fun(*this, &UnattendedRun::_run), step);
    Glib::signal_idle().connect_once(run, Glib::PRIORITY_LOW);
}

void UnattendedRun::_run(Step step)
{
    try {
        (this->*step)();
        return;
    } catch (...) {
        _addFailure();
        if (_phase == Phase::Closing)
            _presenter.tellCurrentException();
        else
            tellCurrentException();
    }
    try {
        _goOnAfterFailure();
    } catch (...) {
        tellCurrentException();
        _presenter.closeWithoutQuestions();
    }
}

void UnattendedRun::_goOnAfterFailure()
{
    switch (_phase) {
    case Phase::Testing:
        _phase = Phase::Writing;
        _later(&UnattendedRun::_writeFiles);
        break;
    case Phase::Opening:
    case Phase::Writing:
        _later(&UnattendedRun::_complete);
        break;
    case Phase::Closing:
    case Phase::Done:
        _presenter.closeWithoutQuestions();
        break;
    }
}

/// On the thread that has ended the run.
void UnattendedRun::_hearEnd(bool outputStarted)
{
    _end = outputStarted ? End::Finished : End::Failed;
    // After everything that the run has queued before, its messages above all.
    _guard.safeBeginUpdateView([this] { _later(&UnattendedRun::_onFinished); });
}

/// For an end that could not be queued: the run would never continue.
bool UnattendedRun::_lookForEnd()
{
    const bool isThere = _end != End::None && _phase == Phase::Testing;
    if (isThere && _isEndLate)
        _run(&UnattendedRun::_onFinished);
    _isEndLate = isThere;
    return true;
}

void UnattendedRun::_onWindowShown()
{
    if (const auto result = _checkFiles(); !result) {
        tell(Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
        _status = NotStarted;
        _complete();
    } else if (!_openFile()) {
        _addFailure();
        _complete();
    } else if (_commandLine.run && !_isTerminating) {
        _startTest();
    } else {
        _status = _commandLine.run ? Stopped : Success;
        _writeFiles();
    }
}

/// Whether the program can write what it is asked for.
Kes::Result UnattendedRun::_checkFiles()
{
    static constexpr lng::Text noReport{"Unattended.noReport", "This program writes no report.",
                                        "Эта программа не создаёт протокол."};
    if (!_commandLine.report.empty() && !_writeReport && !_model.hasReport())
        return Kes::Result::failure(noReport.get());
    return _commandLine.results.empty() ? Kes::Result(true) : _model.checkResultsFile(_commandLine.results);
}

bool UnattendedRun::_openFile()
{
    auto* archive = _model.getArchiveManager();
    if (archive)
        archive->create({});
    if (_commandLine.file.empty())
        return true;
    _presenter.openFile(_commandLine.file);
    return archive && archive->getFileName() == _commandLine.file;
}

void UnattendedRun::_startTest()
{
    _phase = Phase::Testing;
    if (!_model.startTest())
        _notStarted();
}

void UnattendedRun::_notStarted()
{
    static constexpr lng::Text text{"Unattended.notStarted", "The test was not started.",
                                    "Проверка не начата."};
    _phase = Phase::Writing;
    _status = NotStarted;
    // The reasons, which come first, may still be on their way.
    Glib::signal_idle().connect_once([] { tell(text.get()); }, Glib::PRIORITY_LOW);
    _later(&UnattendedRun::_complete);
}

void UnattendedRun::_onFinished()
{
    const auto end = _end.exchange(End::None);
    if (_phase != Phase::Testing || end == End::None)
        return;
    if (end == End::Failed && !_isTerminating) {
        _notStarted();
        return;
    }
    // Should there be no verdict at all.
    _status = Failure;
    _status = toStatus(_model.getRunVerdict(), _isTerminating);
    if (_model.hasRunFailed())
        _addFailure();
    _writeFiles();
}

void UnattendedRun::terminate()
{
    _isTerminating = true;
    // Should the program be ended before there is another one.
    if (_commandLine.run && (_phase == Phase::Opening || _phase == Phase::Testing))
        _status = Stopped;
    // A test that is just being started is stopped once it runs.
    _stopWanted();
    if (isDone())
        _close();
}

void UnattendedRun::_stopWanted()
{
    if (_isTerminating && _phase == Phase::Testing)
        _model.stopTest();
}

void UnattendedRun::_writeFiles()
{
    _phase = Phase::Writing;
    _writeData();
    auto* window = Kes::GtkWidgetHelper::getParentWindow(_presenter.getView());
    if (_commandLine.screenshot.empty())
        _complete();
    else if (window)
        _picture =
            std::make_unique<WindowPicture>(*window, [this] { _later(&UnattendedRun::_takeScreenshot); });
    else
        _later(&UnattendedRun::_takeScreenshot);
}

void UnattendedRun::_writeData()
{
    _write(_commandLine.save, &UnattendedRun::_save);
    _write(_commandLine.report, &UnattendedRun::_report);
    _write(_commandLine.results, &UnattendedRun::_results);
}

UnattendedRun::Status UnattendedRun::endWithoutDisplay()
{
    if (_phase == Phase::Testing)
        _status = Stopped;
    if (_phase == Phase::Testing || _phase == Phase::Writing)
        _writeData();
    return _status == Success ? Failure : _status;
}

void UnattendedRun::_takeScreenshot()
{
    _write(_commandLine.screenshot, &UnattendedRun::_screenshot);
    _picture.reset();
    _complete();
}

/// A file that cannot be written keeps no other one from being written.
void UnattendedRun::_write(const std::string& path, Kes::Result (UnattendedRun::*write)())
{
    if (path.empty())
        return;
    try {
        const auto result = (this->*write)();
        if (result)
            return;
        tell(result.getError() ? Kes::ObjectErrorHelper::toDisplayString({result.getError()})
                               : format(FileManagerLocalization::saveError(), path));
    } catch (...) {
        tellCurrentException();
    }
    _addFailure();
}

Kes::Result UnattendedRun::_save()
{
    auto* archive = _model.getArchiveManager();
    const std::string& path = _commandLine.save;
    const auto failure = Kes::Result::failure(format(FileManagerLocalization::saveError(), path));
    // Saving does not notice a full disk; the comparison with what is on it does.
    return archive && archive->saveAs(path) && !archive->isFileChanged() ? Kes::Result(true) : failure;
}

Kes::Result UnattendedRun::_report()
{
    if (_writeReport)
        return _writeReport(_commandLine.report);
    const std::string made = _model.createReport();
    const std::string contents = made.empty() ? std::string() : Kes::readWholeFile(made);
    if (contents.empty())
        return Kes::Result::failure(FileManagerLocalization::fileCreateError());
    return Kes::writeWholeFile(_commandLine.report, contents);
}

Kes::Result UnattendedRun::_results()
{
    return _model.writeResults(_commandLine.results);
}

Kes::Result UnattendedRun::_screenshot()
{
    return _picture ? _picture->save(_commandLine.screenshot) : Kes::Result(false);
}

void UnattendedRun::_addFailure()
{
    if (_status == Success || _status == OutOfTolerance)
        _status = Failure;
}

void UnattendedRun::_complete()
{
    if (_commandLine.quit || _isTerminating) {
        Kes::DialogBackend::install(std::make_unique<QuittingDialogs>());
        _close();
        return;
    }
    _phase = Phase::Done;
    _presenter.setAttendance(ProgramBasePresenter::Attendance::User);
    Kes::DialogBackend::install(std::move(_userDialogs));
}

void UnattendedRun::_close()
{
    _phase = isDone() ? Phase::Done : Phase::Closing;
    _presenter.requestClose();
}

} // namespace KesProgram
