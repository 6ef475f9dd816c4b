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
    if (_closing || !getCanStart())
        return false;
    _setCanProgramStart(false);
    _setCanProgramStop(false);
    // Taken out first: the wait serves the GUI thread's queue, and a function in it may close the program.
    // The shutdown thread then looks at the start thread, so that no new one is made any more.
    std::thread previous = std::move(_startThread);
    Kes::ThreadHelper::join(previous);
    try {
        if (_onPrepareStart() && !_closing) {
            _startThread = std::thread(&ProgramModel::_startWorkingModeAndStarted, this);
            return true;
        }
    } catch (...) {
        _setCanProgramStart(true);
        throw;
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
        // The run may have ended meanwhile, past the place where it looks at the request.
        if (!_outputStarted)
            _disconnectOnRequest();
        return;
    }
    _report(getHardware()->disconnect());
}

void ProgramModel::_disconnectOnRequest()
{
    if (_stopRequested.exchange(false))
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
    // The outputs must not stay on because a test body failed.
    if (!_runHook(&ProgramModel::_onStart) && _outputStarted) {
        _stopRunning();
        _finish();
    }
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

bool ProgramModel::_runHook(void (ProgramModel::*hook)())
{
    try {
        (this->*hook)();
        return true;
    } catch (...) {
        signalMessage.emit(Kes::getCurrentExceptionText());
        return false;
    }
}

void ProgramModel::_finish()
{
    _runHook(&ProgramModel::_onFinishHardware);
    _runHook(&ProgramModel::_onFinished);
    _setState({});
    _setCanProgramStart(true);
    _setCanProgramStop(false);
    signalFinished.emit(_outputStarted);
    _outputStarted = false;
    // A request that came too late for the hook: it must not wait for the next run.
    _disconnectOnRequest();
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
    _runHook(&ProgramModel::_onStop);
    return true;
}

void ProgramModel::_emitRunningChanged()
{
    // Both, before another thread tells of its change.
    Kes::SignalGate::Guard gate;
    signalCanStopChanged.emit();
    signalRunningChanged.emit();
}

} // namespace KesProgram
