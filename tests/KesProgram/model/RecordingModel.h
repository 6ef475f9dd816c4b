#pragma once

#include "support/Record.h"

#include <KesProgram/model/ProgramModel.h>

#include <condition_variable>
#include <functional>
#include <mutex>

namespace KesTest {

/// A door that a worker thread waits at until the test opens it.
class Door {
public:
    void open();
    void close();
    /// Returns when the door is open or the predicate holds.
    void waitUntilOpenOr(const std::function<bool()>& predicate);

private:
    std::mutex _mutex;
    std::condition_variable _condition;
    bool _open = true;
};

/// A model that writes down, in order, every hook that is called and every signal that it emits, and whose
/// run can be held at its two long steps.
class RecordingModel : public KesProgram::ProgramModel, public Record {
public:
    RecordingModel();
    ~RecordingModel() override;

    /// Holds the start thread while it prepares the hardware.
    Door prepareDoor;
    /// Holds the test body, also when it has been stopped.
    Door bodyDoor;
    bool prepareStartAnswer = true;
    /// What the test body does when the door is open; ends the run when it is not set.
    std::function<void(RecordingModel&)> body;
    std::function<bool()> prepareHardware;

    using ProgramModel::_createProgramHardwareManager;
    using ProgramModel::_finish;
    using ProgramModel::_getProgrammCacheDirectory;
    using ProgramModel::_onHardwareStatusChanged;
    using ProgramModel::_setCanProgramStart;
    using ProgramModel::_setCanProgramStop;
    using ProgramModel::_setState;

    /// What the base class does to prepare the hardware.
    bool prepareRealHardware() { return ProgramModel::_onPrepareHardware(); }

    std::string getExtension() override { return {}; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }

protected:
    bool _onPrepareStart() override;
    bool _onPrepareHardware() override;
    void _onStart() override;
    void _onStop() override;
    void _onFinishHardware() override;
    void _onFinished() override;
    void _onClosing() override;
};

} // namespace KesTest
