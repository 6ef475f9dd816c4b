#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDevice/Kesto.h>
#include <KesMeasure/RunControl.h>

#include <functional>
#include <optional>
#include <vector>

namespace KesMeasure {

/// What a device has reported while it ran a sequence. Times are those of its own clock. A value.
struct SequenceRecord {
    /// When each step that has begun did so.
    std::vector<KesDriver::DeviceTime> steps;
    /// Contact changes within the sequence, in the order of the reports.
    std::vector<KesDriver::InputEvent> inputs;
    std::optional<KesDriver::SequenceEvent> end;
};

/// Runs sequences on a device and collects what it reports meanwhile. Lives during a run, on the start
/// thread; the device reports on its own thread.
class KES_EXPORT SequenceRecorder {
public:
    /// The device and the control outlive it.
    SequenceRecorder(KesDevice::Kesto& kesto, RunControl& control);

    /// Called with the time of the device's clock: when a sequence begins, a few times in a second while it
    /// runs, and when it has ended. Start thread.
    std::function<void(KesDriver::DeviceTime now)> onTime;

    enum class Outcome { Complete, Stopped, Failed };

    /// Starts the sequence and waits for its end. A stop ends the sequence on the device. `Failed`: the
    /// device refuses the sequence, ends it by itself, or never reports its end (five seconds after it was
    /// due, by the device's clock and by that of the computer); see `getError`.
    Outcome run(const KesDriver::OutputSequence& sequence);

    /// What the last sequence gave; once `run` has returned.
    SequenceRecord getRecord() const;
    /// Why the last sequence has failed, as a text for the user.
    const std::string& getError() const { return _error; }

private:
    Outcome _wait(KesDriver::DeviceTime expectedEnd);
    bool _isOver(KesDriver::DeviceTime expectedEnd) const;
    void _tellTime(KesDriver::DeviceTime now) const;
    void _stopOutputs();
    Outcome _judgeEnd();
    Outcome _judgeEarlyEnd();
    Outcome _fail(std::string error);
    void _onReport(const KesDriver::Report& report);

    KesDevice::Kesto& _kesto;
    RunControl& _control;
    SequenceRecord _record;
    std::string _error;
    Kes::ScopedConnection _reports;
};

} // namespace KesMeasure
