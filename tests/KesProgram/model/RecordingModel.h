#pragma once

#include "support/Record.h"

#include <KesProgram/model/ProgramModel.h>

#include <chrono>
#include <functional>
#include <thread>

namespace KesTest {

/// A door that a worker thread waits at until the test opens it.
class Door {
public:
    void open() { _open = true; }
    void close() { _open = false; }
    /// Returns when the door is open or the predicate holds.
    void waitUntilOpenOr(const std::function<bool()>& predicate = [] { return false; })
    {
        while (!_open && !predicate())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

private:
    std::atomic<bool> _open{true};
};

/// A model that writes down, in order, every hook that is called and every signal that it emits, and whose
/// run can be held at its two long steps.
class RecordingModel : public KesProgram::ProgramModel, public Record {
public:
    RecordingModel()
    {
        signalHardwareChanged.connect([this] { write("hardwareChanged"); });
        signalCanStartChanged.connect([this] { write("canStart"); });
        signalCanStopChanged.connect([this] { write("canStop"); });
        signalRunningChanged.connect([this] { write("running"); });
        signalFinished.connect(
            [this](bool started) { write(started ? "finished(true)" : "finished(false)"); });
        signalMessage.connect([this](const std::string& text) { write("message: " + text); });
        signalStateChanged.connect([this] { write("state"); });
        signalClosing.connect([this] { write("closing"); });
        signalClosed.connect([this] { write("closed"); });
    }
    void write(const std::string& entry)
    {
        if (onEntry)
            onEntry(entry);
        Record::write(withFlags ? entry + " " + getFlags() : entry);
    }
    /// Called before an entry is written.
    std::function<void(const std::string& entry)> onEntry;
    /// Each entry is followed by the flags at that moment.
    bool withFlags = false;
    /// Can-start, running and output-started, "-" for one that is not set.
    std::string getFlags()
    {
        return {getCanStart() ? 'c' : '-', isRunning() ? 'r' : '-', isOutputStarted() ? 'o' : '-'};
    }
    ~RecordingModel() override
    {
        prepareDoor.open();
        bodyDoor.open();
    }

    /// Holds the start thread while it prepares the hardware.
    Door prepareDoor;
    /// Holds the test body, also when it has been stopped.
    Door bodyDoor;
    bool prepareStartAnswer = true;
    /// What the test body does when the door is open; ends the run when it is not set.
    std::function<void(RecordingModel&)> body;
    std::function<bool()> prepareHardware;

    using ProgramModel::_finish;
    using ProgramModel::_onHardwareStatusChanged;
    using ProgramModel::_setCanProgramStart;
    using ProgramModel::_setCanProgramStop;

    /// What the base class does to prepare the hardware.
    bool prepareRealHardware() { return ProgramModel::_onPrepareHardware(); }

    bool isLocal = false;
    bool usesLocalHardware() override
    {
        failIn("usesLocalHardware");
        return isLocal;
    }
    bool getCanStart() override
    {
        failIn("getCanStart");
        return ProgramModel::getCanStart();
    }
    std::string getExtension() override { return {}; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }

protected:
    bool _onPrepareStart() override
    {
        write("onPrepareStart");
        return prepareStartAnswer;
    }
    bool _onPrepareHardware() override
    {
        write("onPrepareHardware");
        prepareDoor.waitUntilOpenOr();
        return prepareHardware ? prepareHardware() : true;
    }
    void _onStart() override
    {
        write("onStart");
        _setState("busy");
        if (body) {
            body(*this);
            return;
        }
        bodyDoor.waitUntilOpenOr();
        _finish();
    }
    void _onStop() override { write("onStop"); }
    void _onFinishHardware() override
    {
        write("onFinishHardware");
        ProgramModel::_onFinishHardware();
    }
    void _onFinished() override { write("onFinished"); }
    bool _isSupportedHardwareSync() override
    {
        failIn("isSupportedHardwareSync");
        return ProgramModel::_isSupportedHardwareSync();
    }
    void _onHardwareChanged(KesDevice::HardwareManager*) override { failIn("onHardwareChanged"); }
    void _onClosing() override { write("onClosing"); }
};

} // namespace KesTest
