// The part of the model that starts, stops and finishes a test run.

#include <KesProgram/model/ProgramModel.h>

#include <KesCommon/ExceptionText.h>
#include <KesDevice/HardwareManager.h>

namespace KesProgram {

bool ProgramModel::getCanStart()
{
    return _canStart && !_shareHardware()->isOutputRunning();
}

bool ProgramModel::startTest()
{
    if (_closing || !getCanStart())
        return false;
    _setCanProgramStart(false);
    _setCanProgramStop(false);
    // Taken out first: the wait serves the GUI thread's queue, and a function in it may close the program.
    // The shutdown thread then looks at the start thread, so that no new one is made any more.
    Kes::Worker previous = std::move(_startThread);
    previous.wait();
    bool isStarted = false;
    try {
        isStarted = _onPrepareStart() && !_closing && _makeStartThread();
    } catch (...) {
        _setCanProgramStart(true);
        throw;
    }
    if (!isStarted)
        _setCanProgramStart(true);
    return isStarted;
}

bool ProgramModel::_makeStartThread()
{
    _holdHardware();
    _setIsHardwareHeld(true);
    // The system may have no thread to give.
    return _runSafely([this] {
        _startThread = Kes::Worker("KesProgram_Start", [this] { _startWorkingModeAndStarted(); });
    });
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
        if (!_outputStarted && _stopRequested.exchange(false))
            _disconnectInBackground();
        return;
    }
    _disconnectInBackground();
}

/// The GUI thread does not wait for devices.
void ProgramModel::_disconnectInBackground()
{
    // The shutdown thread is looking at the thread.
    if (_closing)
        return;
    const auto previous = std::make_shared<Kes::Worker>(std::move(_disconnectThread));
    const auto disconnect = [this, previous, hardware = _shareHardware()] {
        previous->wait();
        _report(hardware->disconnect());
    };
    _runSafely([&] { _disconnectThread = Kes::Worker("KesProgram_Disc", disconnect); });
}

void ProgramModel::_disconnectOnRequest()
{
    if (_stopRequested.exchange(false))
        _report(_shareHardware()->disconnect());
}

void ProgramModel::_startWorkingModeAndStarted()
{
    if (!_prepareHardwareSafely() || !_enterRunning()) {
        _finish();
        return;
    }
    _outputStarted = true;
    // A device may have failed after the preparation and before there was a run to be stopped. It has been
    // told of then; the test body finds the run stopped.
    if (!_shareHardware()->checkOutput())
        _stopRunning();
    // The outputs must not stay on because a test body failed.
    if (!_runHook(&ProgramModel::_onStart) && _outputStarted) {
        _stopRunning();
        _finish();
    }
}

bool ProgramModel::_prepareHardwareSafely()
{
    bool isPrepared = false;
    return _runSafely([&] { isPrepared = _onPrepareHardware(); }) && isPrepared;
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
    return _runSafely([this, hook] { (this->*hook)(); });
}

bool ProgramModel::_runSafely(const std::function<void()>& step)
{
    try {
        step();
        return true;
    } catch (...) {
        signalMessage.emit(Kes::getCurrentExceptionText());
        return false;
    }
}

void ProgramModel::_finish()
{
    // The outputs go off whatever the program's own step does.
    if (!_runHook(&ProgramModel::_onFinishHardware))
        _runSafely([this] { ProgramModel::_onFinishHardware(); });
    _runHook(&ProgramModel::_onFinished);
    _setState({});
    _setCanProgramStart(true);
    _setCanProgramStop(false);
    signalFinished.emit(_outputStarted);
    _outputStarted = false;
    _setIsHardwareHeld(false);
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
