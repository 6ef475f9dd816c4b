// The way from a request to close to the end of the program.

#include <KesCommon/EmitLast.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/OpenDialogs.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/detail/ProgramBasePresenterFields.h>
#include <KesProgram/text/Program.h>

namespace KesProgram {

bool ProgramBasePresenter::_onClosingFromView()
{
    requestClose();
    return true;
}

void ProgramBasePresenter::requestClose()
{
    auto& closing = _fields->closing;
    if (!_fields->view || closing.isDeciding || closing.isWaiting || closing.isUnderWay())
        return;
    if (Kes::OpenDialogs::any()) {
        closing.isWaiting = true;
        _fields->dialogs.whenClosed([this] {
            _fields->closing.isWaiting = false;
            requestClose();
        });
        return;
    }
    const FlagScope deciding(closing.isDeciding);
    _onClosing();
}

void ProgramBasePresenter::_onClosing()
{
    auto& closing = _fields->closing;
    auto& model = *_getModel();
    if (closing.isUnderWay())
        return;
    if (model.isRunning()) {
        const FlagScope asking(closing.isAsking);
        const auto answer =
            Kes::DialogPresenter::show(getView(), lng::Program::get("Message.closeConfirmation"),
                                       model.getProgramName(), Kes::DialogResult::YesNo);
        if (answer != Kes::DialogResult::Yes)
            return;
        model.stopTest();
    }
    if (model.isRunning())
        _waitForStop(model);
    else
        _saveOnClosing();
}

void ProgramBasePresenter::_waitForStop(ProgramModel& model)
{
    _fields->closing.isStopping = true;
    // Left in place: when the user cancels the archive question, the next end of a run asks it again.
    if (!_fields->runningConnection.connected())
        _fields->runningConnection = model.signalRunningChanged.connect([this, &model] {
            if (!model.isRunning())
                _fromModel([this] { _onRunningChangedOnClosing(); });
        });
    // It may have stopped before there was a slot to tell.
    if (!model.isRunning())
        _onRunningChangedOnClosing();
}

void ProgramBasePresenter::_onRunningChangedOnClosing()
{
    // While the question is open, `_onClosing` itself goes on when it has been answered.
    if (_fields->closing.isAsking)
        return;
    _fields->closing.isStopping = false;
    // Another run may have begun meanwhile: about that one the next request asks.
    if (!_getModel()->isRunning())
        _saveOnClosing();
}

void ProgramBasePresenter::_saveOnClosing()
{
    auto& closing = _fields->closing;
    if (closing.isSaving || closing.isClosed)
        return;
    const FlagScope saving(closing.isSaving);
    const Kes::OpenDialogs::Scope dialogs;
    if (_getModel()->hasArchiveLogic() && !_fields->archive->close())
        return;
    // Before the model is closed, and the window with it: a hidden window no longer knows its place.
    _saveXmlConfig();
    closing.isClosed = true;
    try {
        _getModel()->close();
    } catch (...) {
        // As long as the window is there, it can be closed once more.
        closing.isClosed = !_fields->closingFromView.connected();
        throw;
    }
}

void ProgramBasePresenter::_onUnloadingFromModel()
{
    // The closing connection is cut first: the window's own delete event arrives later, from the main loop.
    _fields->closing.isClosed = true;
    _fields->closingFromView.disconnect();
    // What is changed from now on would be lost without a question. The window behind a modal one cannot
    // close.
    if (_fields->testObject)
        _fields->testObject->close();
    if (_fields->hardwareSettings)
        _fields->hardwareSettings->close();
    _fields->view->close();
}

void ProgramBasePresenter::_onClosedFromModel()
{
    _fields->dialogs.whenClosed([this] { Kes::emitLast(signalClosed); });
}

} // namespace KesProgram
