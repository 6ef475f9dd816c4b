#pragma once

#include <Overcurrent/run/RunControl.h>

#include <KesCommon/Connection.h>
#include <KesCommon/Result.h>
#include <KesDevice/Kesto.h>

#include <optional>
#include <vector>

namespace Overcurrent {

/// A contact change, with the step of the sequence in which it came.
struct RecordedInput {
    std::size_t step = 0;
    KesDriver::InputEvent event;
};

/// What a device has reported while it ran a sequence.
struct SequenceRecord {
    /// When each step that has begun did so.
    std::vector<KesDriver::DeviceTime> steps;
    std::vector<RecordedInput> inputs;
    std::optional<KesDriver::SequenceEvent> end;
};

/// Runs sequences on a device and collects what it reports meanwhile. Lives during a run, on the start
/// thread; the device reports on its own thread.
class SequenceRecorder {
public:
    /// The device and the control outlive it.
    SequenceRecorder(KesDevice::Kesto& kesto, RunControl& control);

    enum class Outcome { Complete, Stopped, Failed };

    /// Starts the sequence and waits for its end. A stop ends the sequence on the device. `Failed`: the
    /// device refuses the sequence, ends it by itself, or never tells its end; see `getError`.
    Outcome run(const KesDriver::OutputSequence& sequence);

    /// What the last sequence gave; once `run` has returned.
    SequenceRecord getRecord() const;
    const std::string& getError() const { return _error; }

private:
    Outcome _wait(KesDriver::DeviceTime expectedEnd);
    void _stopOutputs();
    Outcome _judgeEnd();
    Outcome _fail(std::string error);
    void _onInput(const KesDriver::InputEvent& event);
    void _onStep(const KesDriver::StepEvent& event);
    void _onFinished(const KesDriver::SequenceEvent& event);

    KesDevice::Kesto& _kesto;
    RunControl& _control;
    SequenceRecord _record;
    std::string _error;
    Kes::ScopedConnection _inputConnection;
    Kes::ScopedConnection _stepConnection;
    Kes::ScopedConnection _finishedConnection;
};

} // namespace Overcurrent
