// The part of the model that starts, stops and finishes a test run.

#include <KesProgram/model/ProgramModel.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/ThreadHelper.h>

namespace KesProgram {

bool ProgramModel::getCanStart()
{
    return _canStart && !getHardware()->isOutputRunning();
}

bool ProgramModel::startTest()
{
    if (!getCanStart())
        return false;
    _setCanProgramStart(false);
    _setCanProgramStop(false);
    // Taken out first: the wait serves the GUI thread's queue, and a function in it may close the program.
    // The shutdown thread then looks at the start thread, so that no new one is made any more.
    std::thread previous = std::move(_startThread);
    Kes::ThreadHelper::join(previous);
    if (_onPrepareStart() && !_closing) {
        _startThread = std::thread(&ProgramModel::_startWorkingModeAndStarted, this);
        return true;
    }
    _setCanProgramStart(true);
    return false;
}

void ProgramModel::stopTest()
{
    _stopRunning();
}

void ProgramModel::beginDisconnect()
{
    if (_outputStarted) {
        _stopRequested = true;
        _stopRunning();
        return;
    }
    _report(getHardware()->disconnect());
}

void ProgramModel::_startWorkingModeAndStarted()
{
    Kes::ThreadHelper::setCurrentThreadName("KesProgram_Start");
    if (!_prepareHardwareSafely() || !_enterRunning()) {
        _finish();
        return;
    }
    _outputStarted = true;
    _runSafely();
}

bool ProgramModel::_prepareHardwareSafely()
{
    try {
        return _onPrepareHardware();
    } catch (...) {
        signalMessage.emit(Kes::getCurrentExceptionText());
        return false;
    }
}

bool ProgramModel::_enterRunning()
{
    bool changed = false;
    {
        std::lock_guard lock(_runMutex);
        if (_closing)
            return false;
        changed = !_running.exchange(true);
    }
    if (changed)
        _emitRunningChanged();
    return true;
}

void ProgramModel::_runSafely()
{
    try {
        _onStart();
    } catch (...) {
        // The outputs must not stay on because a test body failed.
        signalMessage.emit(Kes::getCurrentExceptionText());
        if (_outputStarted) {
            _stopRunning();
            _finish();
        }
    }
}

void ProgramModel::_finish()
{
    _onFinishHardware();
    _onFinished();
    _setState({});
    _setCanProgramStart(true);
    _setCanProgramStop(false);
    signalFinished.emit(_outputStarted);
    _outputStarted = false;
}

void ProgramModel::_setCanProgramStart(bool canStart)
{
    if (_canStart.exchange(canStart) != canStart)
        signalCanStartChanged.emit();
}

void ProgramModel::_setCanProgramStop(bool running)
{
    if (_running.exchange(running) != running)
        _emitRunningChanged();
}

/// Exactly one of the threads that want to stop a run gets past the exchange.
bool ProgramModel::_stopRunning()
{
    if (!_running.exchange(false))
        return false;
    _emitRunningChanged();
    _onStop();
    return true;
}

void ProgramModel::_emitRunningChanged()
{
    signalCanStopChanged.emit();
    signalRunningChanged.emit();
}

} // namespace KesProgram
