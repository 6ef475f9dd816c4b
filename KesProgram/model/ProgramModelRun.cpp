// The part of the model that starts, stops and finishes a test run.

#include <KesProgram/model/ProgramModel.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesDevice/HardwareManager.h>

#include <algorithm>

namespace KesProgram {

namespace {

/// The outputs do not wait longer for a program's own way to stop.
constexpr std::chrono::milliseconds longestTelling{50};

} // namespace

bool ProgramModel::ModelRunState::setRunning(bool running)
{
    const bool wasRunning = isRunning();
    if (isOutputStarted())
        phase = running ? Phase::Running : Phase::Stopped;
    else
        phase = running ? Phase::Announced : Phase::Idle;
    return wasRunning;
}

bool ProgramModel::ModelRunState::setOutputStarted(bool started)
{
    const bool wasStarted = isOutputStarted();
    if (isRunning())
        phase = started ? Phase::Running : Phase::Announced;
    else
        phase = started ? Phase::Stopped : Phase::Idle;
    return wasStarted;
}

ProgramModel::ModelRunState ProgramModel::_getRun() const
{
    std::lock_guard lock(_runMutex);
    return _run;
}

bool ProgramModel::getCanStart()
{
    return _getRun().canStart && !_shareHardware()->isOutputRunning();
}

bool ProgramModel::startTest()
{
    if (_getRun().isClosing || !getCanStart() ||
        _changeRun([](ModelRunState& run) { return std::exchange(run.isStarting, true); }))
        return false;
    bool isStarted = false;
    const auto end = [&] {
        _changeRun([](ModelRunState& run) { run.isStarting = false; });
        if (!isStarted)
            _setCanProgramStart(true);
    };
    try {
        isStarted = _beginStart();
    } catch (...) {
        end();
        throw;
    }
    end();
    return isStarted;
}

bool ProgramModel::_beginStart()
{
    _changeRun([](ModelRunState& run) { run.isRefused = run.hasFailed = false; });
    _setCanProgramStart(false);
    _setCanProgramStop(false);
    // The wait serves the GUI thread's queue, and a function in it may close the program.
    _waitForPreviousRun();
    return !_getRun().isClosing && _onPrepareStart() && !_getRun().isClosing && _makeStartThread();
}

void ProgramModel::_waitForPreviousRun()
{
    _startThread.wait();
    const auto isEnded = [this, self = std::this_thread::get_id()] {
        return std::all_of(_finishing.begin(), _finishing.end(), [&](auto id) { return id == self; });
    };
    std::unique_lock lock(_runMutex);
    _finished.wait(lock, isEnded);
}

bool ProgramModel::_makeStartThread()
{
    _holdHardware();
    _setIsHardwareHeld(true);
    const auto start = [this, disconnecting = _disconnectThread] {
        // It would end what begins here.
        if (disconnecting)
            disconnecting->wait();
        _startWorkingModeAndStarted();
    };
    // The system may have no thread to give.
    return _runSafely([&] { _startThread = Kes::Worker("KesProgram_Start", start); });
}

void ProgramModel::stopTest()
{
    _stopRunning();
}

void ProgramModel::beginDisconnect()
{
    const bool isAtEnd = _changeRun([](ModelRunState& run) {
        run.isDisconnecting |= run.isOutputStarted();
        return run.isOutputStarted();
    });
    if (isAtEnd)
        _stopRunning();
    else
        _disconnectInBackground();
}

void ProgramModel::switchOffAtOnce()
{
    const bool wasRunning = _changeRun([](ModelRunState& run) {
        run.isRefused = run.isStopBeingTold = true;
        return run.setRunning(false);
    });
    const auto switchOff = [this](KesDevice::HardwareManager& hardware) {
        // A test body that has not heard of its stop takes what it meets for a fault.
        std::unique_lock lock(_runMutex);
        _stopTold.waitFor(lock, longestTelling, [this] { return !_run.isStopBeingTold; });
        lock.unlock();
        return hardware.stopWorkingMode();
    };
    const bool isAsked =
        _inBackground(_switchOffThread, "KesProgram_Off", &ProgramModel::_shareSwitchedOn, switchOff);
    if (wasRunning)
        _tellStopped();
    _changeRun([this](ModelRunState& run) {
        run.isStopBeingTold = false;
        _stopTold.notifyAll();
    });
    // Without a thread for it here: a window that stands still is better than outputs that stay on.
    if (!isAsked)
        _runSafely([&] { _report(switchOff(*_shareSwitchedOn())); });
}

void ProgramModel::_disconnectInBackground()
{
    // The shutdown thread is looking at the thread.
    if (!_getRun().isClosing)
        _inBackground(_disconnectThread, "KesProgram_Disc", &ProgramModel::_shareHardware,
                      &KesDevice::HardwareManager::disconnect);
}

/// The GUI thread does not wait for devices. One after the other. False without a thread for it.
bool ProgramModel::_inBackground(std::shared_ptr<Kes::Worker>& thread, const char* name,
                                 SharedHardware (ProgramModel::*share)(),
                                 const std::function<Kes::Result(KesDevice::HardwareManager&)>& operation)
{
    return _runSafely([&] {
        const auto ask = [this, operation, previous = thread, hardware = (this->*share)()] {
            if (previous)
                previous->wait();
            _report(operation(*hardware));
            // It may have become a run meanwhile.
            if (isOutputStarted() && !_isHardwareStillOn())
                _stopRunning();
        };
        thread = std::make_shared<Kes::Worker>(name, ask);
    });
}

void ProgramModel::_disconnectOnRequest()
{
    if (_changeRun([](ModelRunState& run) { return std::exchange(run.isDisconnecting, false); }))
        _report(_shareHardware()->disconnect());
}

void ProgramModel::_startWorkingModeAndStarted()
{
    bool isEntered = false;
    if (!_prepareHardwareSafely() || !_runSafely([&] { isEntered = _enterRunning(); }) || !isEntered) {
        _finish();
        return;
    }
    _changeRun([](ModelRunState& run) { run.setOutputStarted(true); });
    // A device may have failed, or the devices may have been switched off, after the preparation and before
    // there was a run to be stopped. The test body finds the run stopped.
    const auto stopIfOff = [this] {
        if (!_isHardwareStillOn())
            _stopRunning();
    };
    // The outputs must not stay on because a test body failed.
    if (!(_runSafely(stopIfOff) && _runHook(&ProgramModel::_onStart)) && isOutputStarted()) {
        _stopRunning();
        _finish();
    }
}

bool ProgramModel::_isHardwareStillOn()
{
    const auto current = _shareHardware();
    std::unique_lock lock(_hardwareMutex);
    const auto switchedOn = _runHardware;
    lock.unlock();
    if (switchedOn && (switchedOn != current || !switchedOn->isOutputRunning()))
        return false;
    return static_cast<bool>(current->checkOutput());
}

bool ProgramModel::_prepareHardwareSafely()
{
    bool isPrepared = false;
    return _runSafely([&] { isPrepared = _onPrepareHardware(); }) && isPrepared;
}

bool ProgramModel::_enterRunning()
{
    enum class Entry { Refused, Entered, WasAnnounced };
    const auto entry = _changeRun([](ModelRunState& run) {
        if (run.isClosing || run.isRefused)
            return Entry::Refused;
        return run.setRunning(true) ? Entry::WasAnnounced : Entry::Entered;
    });
    if (entry == Entry::Entered)
        _emitRunningChanged();
    return entry != Entry::Refused;
}

bool ProgramModel::_runHook(void (ProgramModel::*hook)())
{
    return _runSafely([this, hook] { (this->*hook)(); });
}

/// Inside a catch block.
void ProgramModel::_onStepThrown()
{
    _changeRun([](ModelRunState& run) { run.hasFailed = true; });
    _tellCurrentException();
}

/// Without memory for the text the run still has to end.
void ProgramModel::_tellCurrentException() noexcept
{
    try {
        signalMessage.emit(Kes::getCurrentExceptionText());
    } catch (...) {
        KesLog::Log::writeError("out of memory");
    }
}

void ProgramModel::_finish()
{
    const auto self = std::this_thread::get_id();
    _runSafely([&] { _changeRun([&](ModelRunState&) { _finishing.push_back(self); }); });
    _finishRun();
    _changeRun([&](ModelRunState&) {
        std::erase(_finishing, self);
        _finished.notifyAll();
    });
}

void ProgramModel::_finishRun()
{
    // The outputs go off whatever the program's own hooks do.
    if (!_runHook(&ProgramModel::_onFinishHardware) &&
        !_runSafely([this] { ProgramModel::_onFinishHardware(); }))
        _runSafely([this] { _report(_shareSwitchedOn()->stopWorkingMode()); });
    _runHook(&ProgramModel::_onFinished);
    _runSafely([this] { _setState({}); });
    _runSafely([this] { _setCanProgramStart(true); });
    _runSafely([this] { _setCanProgramStop(false); });
    _runSafely([this] { signalFinished.emit(isOutputStarted()); });
    _changeRun([](ModelRunState& run) { run.setOutputStarted(false); });
    _setIsHardwareHeld(false);
    // A request that came too late for the hook: it must not wait for the next run.
    _runSafely([this] { _disconnectOnRequest(); });
}

void ProgramModel::_setCanProgramStart(bool canStart)
{
    if (_changeRun([=](ModelRunState& run) { return std::exchange(run.canStart, canStart); }) != canStart)
        signalCanStartChanged.emit();
}

void ProgramModel::_setCanProgramStop(bool running)
{
    if (_changeRun([=](ModelRunState& run) { return run.setRunning(running); }) != running)
        _emitRunningChanged();
}

/// Exactly one of the threads that want to stop a run finds it running.
bool ProgramModel::_stopRunning()
{
    const bool wasRunning = _changeRun([](ModelRunState& run) { return run.setRunning(false); });
    if (wasRunning)
        _tellStopped();
    return wasRunning;
}

void ProgramModel::_tellStopped()
{
    _runSafely([this] { _emitRunningChanged(); });
    _runHook(&ProgramModel::_onStop);
}

void ProgramModel::_emitRunningChanged()
{
    // Both, before another thread reports its change.
    Kes::SignalGate::Guard gate;
    signalCanStopChanged.emit();
    signalRunningChanged.emit();
}

} // namespace KesProgram
