#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/HeatBudget.h>
#include <KesMeasure/SequenceRecorder.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace KesMeasure {

/// What has to hold before a step of a test begins.
struct StepGuard {
    /// The outputs at which the relay resets, and for how long they stand at least.
    KesDriver::OutputState rest{};
    KesDriver::DeviceTime restTime = std::chrono::milliseconds(500);
    /// The contacts that have to be open, by their inputs, and how long that may take from the beginning of
    /// the rest. A moment more is granted.
    std::vector<unsigned> contacts;
    KesDriver::DeviceTime resetTime = std::chrono::milliseconds(500);
    /// How long a contact has to be open to count as open.
    KesDriver::DeviceTime debounce = std::chrono::milliseconds(5);
};

/// Runs the steps of a test one after the other, each only when the relay is ready for it: its contacts are
/// seen open and, when it has a limit of heating, the step does not fill it. Lives during a run, on the start
/// thread.
///
/// A step is one sequence on the device; its time limit is the duration of its output steps. The rest before
/// it is a sequence of its own, so what is not allowed to begin is not put out at all. A sequence that needs
/// the resting outputs directly before it begins with them.
class KES_EXPORT StepRunner {
public:
    /// How long a rest may become for cooling, in seconds.
    static constexpr double longestCooling = 1800.0;

    /// The device and the control outlive it. Without a budget heat plays no part.
    StepRunner(KesDevice::Kesto& kesto, RunControl& control, std::optional<HeatBudget> budget = std::nullopt);

    /// The rest before the next step is lengthened to that many seconds, for cooling; 0: it is over.
    std::function<void(double seconds)> onCooling;

    /// As `SequenceRecorder::onTime`.
    std::function<void(KesDriver::DeviceTime now)>& onTime() { return _recorder.onTime; }
    /// What has become of the budget.
    const std::optional<HeatBudget>& getBudget() const { return _budget; }

    enum class Outcome {
        /// The step has been made: see `getRecord`.
        Complete,
        /// The contacts did not open; the step was not begun.
        NotReset,
        /// No rest of at most `longestCooling` cools the relay enough; the step was not begun. See
        /// `getError`.
        TooHot,
        Stopped,
        /// As `SequenceRecorder::Outcome::Failed`.
        Failed
    };

    /// All outputs are zero when it returns.
    Outcome run(const StepGuard& guard, const KesDriver::OutputSequence& sequence);

    /// What the step gave; after `Complete`.
    SequenceRecord getRecord() const { return _recorder.getRecord(); }
    const std::string& getError() const { return _error; }

private:
    Outcome _rest(const StepGuard& guard, KesDriver::DeviceTime restTime);
    std::optional<KesDriver::DeviceTime> _getRestTime(const StepGuard& guard,
                                                      const KesDriver::OutputSequence& sequence);
    Outcome _record(const KesDriver::OutputSequence& sequence);
    void _heat(const KesDriver::OutputSequence& sequence);
    Outcome _fail(Outcome outcome, std::string error);

    SequenceRecorder _recorder;
    std::optional<HeatBudget> _budget;
    std::string _error;
};

} // namespace KesMeasure
