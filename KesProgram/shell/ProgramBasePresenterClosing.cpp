// The way from a request to close to the end of the program.

#include <KesCommon/EmitLast.h>
#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/OpenDialogs.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ConfigurationError.h>
#include <KesProgram/shell/detail/ProgramBasePresenterFields.h>
#include <KesProgram/text/Program.h>

namespace KesProgram {

namespace {

/// A box without a title is better than none.
std::string titleOf(ProgramModel& model)
{
    try {
        return model.getProgramName();
    } catch (...) {
        return {};
    }
}

} // namespace

bool ProgramBasePresenter::_onClosingFromView()
{
    // The toolkit takes an exception for the permission to hide the window.
    try {
        requestClose();
    } catch (...) {
        tellCurrentException();
    }
    return true;
}

void ProgramBasePresenter::requestClose()
{
    auto& closing = _fields->closing;
    const bool isUnderWay = closing == ClosingPhase::Waiting || closing == ClosingPhase::Deciding ||
                            closing == ClosingPhase::Asking || closing == ClosingPhase::Saving;
    if (!_fields->view || isUnderWay || closing == ClosingPhase::Closed)
        return;
    if (Kes::OpenDialogs::any()) {
        closing = ClosingPhase::Waiting;
        _fields->dialogs.whenClosed([this] {
            if (_fields->closing != ClosingPhase::Waiting)
                return;
            _fields->closing = ClosingPhase::Open;
            requestClose();
        });
        return;
    }
    {
        const ClosingScope deciding(closing, ClosingPhase::Deciding);
        _onClosing();
    }
    // What was awaited may have come under the question, and been left to it.
    if (_fields->isStopAwaited && !_getModel()->isRunning())
        _onRunningChangedOnClosing();
}

void ProgramBasePresenter::_onClosing()
{
    auto& closing = _fields->closing;
    auto& model = *_getModel();
    if (closing == ClosingPhase::Asking || closing == ClosingPhase::Saving || closing == ClosingPhase::Closed)
        return;
    if (model.isRunning() && !_stopOnRequest(model))
        return;
    if (model.isRunning())
        _waitForStop(model);
    else
        _saveOnClosing();
}

/// False: the user wants the test to continue.
bool ProgramBasePresenter::_stopOnRequest(ProgramModel& model)
{
    const ClosingScope asking(_fields->closing, ClosingPhase::Asking);
    const auto answer = Kes::DialogPresenter::show(getView(), lng::Program::get("Message.closeConfirmation"),
                                                   model.getProgramName(), Kes::DialogResult::YesNo,
                                                   [&model] { return !model.isRunning(); });
    if (answer == Kes::DialogResult::Yes)
        model.stopTest();
    return answer == Kes::DialogResult::Yes;
}

void ProgramBasePresenter::_waitForStop(ProgramModel& model)
{
    _fields->isStopAwaited = true;
    // Left in place: when the user cancels the archive question, the next end of a run asks it again.
    if (!_fields->runningConnection.connected())
        _fields->runningConnection = model.signalRunningChanged.connect([this, &model] {
            if (model.isRunning()) {
                ++_fields->runs;
                return;
            }
            // The flag changes before the signal comes, and what closes may have seen it.
            _fromModel([this, run = _fields->runs.load()] {
                if (run != _fields->savedRun)
                    _onRunningChangedOnClosing();
            });
        });
    // It may have stopped before there was a slot to hear of it.
    if (!model.isRunning())
        _onRunningChangedOnClosing();
}

void ProgramBasePresenter::_onRunningChangedOnClosing()
{
    // While the question is open, `_onClosing` itself continues when it has been answered.
    if (_fields->closing == ClosingPhase::Asking)
        return;
    _fields->isStopAwaited = false;
    // Another run may have begun meanwhile: about that one the next request asks.
    if (_getModel()->isRunning())
        return;
    try {
        _saveOnClosing();
    } catch (...) {
        tellCurrentException();
    }
}

void ProgramBasePresenter::_saveOnClosing()
{
    auto& closing = _fields->closing;
    if (closing == ClosingPhase::Saving || closing == ClosingPhase::Closed)
        return;
    _fields->isStopAwaited = false;
    _fields->savedRun = _fields->runs;
    const ClosingScope saving(closing, ClosingPhase::Saving);
    const Kes::OpenDialogs::Scope dialogs;
    if (_getModel()->hasArchiveLogic() && !_fields->archive->close())
        return;
    // Before the model is closed, and the window with it: a hidden window no longer knows its place.
    try {
        _saveXmlConfig();
    } catch (...) {
        _fields->configurationFailure = std::current_exception();
        throw;
    }
    _closeModel();
}

bool ProgramBasePresenter::isClosing() const
{
    return _fields->closing != ClosingPhase::Open || _fields->isStopAwaited;
}

void ProgramBasePresenter::closeWithoutQuestions()
{
    if (_fields->closing == ClosingPhase::Closed)
        return;
    try {
        _saveXmlConfig();
    } catch (...) {
        KesLog::Log::writeError(Kes::getCurrentExceptionText());
    }
    _closeModel();
}

void ProgramBasePresenter::_closeModel()
{
    if (std::exchange(_fields->closing, ClosingPhase::Closed) != ClosingPhase::Closed)
        _getModel()->close();
}

void ProgramBasePresenter::tellCurrentException()
{
    const bool isConfiguration = std::current_exception() == _fields->configurationFailure;
    auto text = Kes::getCurrentExceptionText();
    try {
        throw;
    } catch (const ConfigurationError&) {
        // It says all that there is to say.
    } catch (...) {
        if (isConfiguration)
            text = ConfigurationError(_getXmlConfigFullPath(), text).what();
    }
    KesLog::Log::writeError(text);
    // Without memory for the box the program ends here: it would try again and again what it cannot do.
    const auto title = titleOf(*_getModel());
    runDialogs([&] { Kes::DialogPresenter::show(getView(), text, title, Kes::DialogResult::Ok); });
    // The user has answered all questions; the file is not worth another one.
    if (isConfiguration)
        _closeModel();
}

void ProgramBasePresenter::_onUnloadingFromModel()
{
    // The closing connection is cut first: the window's own delete event arrives later, from the main loop.
    _fields->closing = ClosingPhase::Closed;
    _fields->closingFromView.disconnect();
    // What is changed from now on would be lost without a question. The window behind a modal one cannot
    // close.
    _closeSafely(_fields->testObject.get());
    _closeSafely(_fields->hardwareSettings.get());
    _closeSafely(_fields->view.get());
}

/// One window that fails does not keep the others open.
template <typename Window>
void ProgramBasePresenter::_closeSafely(Window* window)
{
    try {
        if (window)
            window->close();
    } catch (...) {
        _onMessageFromModel(Kes::getCurrentExceptionText());
    }
}

void ProgramBasePresenter::_onClosedFromModel()
{
    _fields->dialogs.whenClosed([this] {
        try {
            Kes::emitLast(signalClosed);
        } catch (...) {
            KesLog::Log::writeError(Kes::getCurrentExceptionText());
        }
    });
}

} // namespace KesProgram
