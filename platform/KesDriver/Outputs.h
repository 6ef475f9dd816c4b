#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/DeviceTime.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What a device puts out and reads, as values. Magnitudes are effective values in amperes and volts, angles
/// degrees, frequencies hertz, times the device's own clock. Any thread.
namespace KesDriver {

/// Time on the clock that devices share in a synchronisation mode with a common clock, in microseconds.
using CommonTime = std::chrono::duration<std::int64_t, std::micro>;

/// A sinusoidal output: effective value (amperes or volts, never negative) and phase in degrees.
struct Phasor {
    double magnitude = 0.0;
    double degrees = 0.0;

    bool operator==(const Phasor&) const = default;
};

/// What a device puts out: three currents, three voltages, one frequency for each of the two groups, and the
/// binary outputs.
///
/// Phases are counted from a reference wave that each group has. It runs on through every change: a new
/// frequency turns it faster or slower without a jump, and what jumps is only what a new phase says.
struct OutputState {
    /// IA, IB, IC in amperes.
    std::array<Phasor, 3> currents{};
    /// UA, UB, UC in volts.
    std::array<Phasor, 3> voltages{};
    /// Of all three currents.
    double currentHertz = 50.0;
    /// Of all three voltages.
    double voltageHertz = 50.0;
    /// Bit 0 set: output 1 is closed.
    std::uint32_t binaryOutputs = 0;

    bool operator==(const OutputState&) const = default;
};

/// How fast a sinusoidal output changes, per second.
struct PhasorRate {
    double magnitude = 0.0;
    double degrees = 0.0;

    bool operator==(const PhasorRate&) const = default;
};

/// How the outputs change during a step, run by the device itself: dI/dt in A/s, dU/dt in V/s, phases in
/// degrees/s, frequencies in Hz/s. The outputs at the end of the step, when nothing ends it earlier, must lie
/// within the limits as those at its beginning do; a magnitude does not pass zero.
struct OutputRamp {
    std::array<PhasorRate, 3> currents{};
    std::array<PhasorRate, 3> voltages{};
    double currentHertz = 0.0;
    double voltageHertz = 0.0;

    bool operator==(const OutputRamp&) const = default;
};

/// The outputs after a time on a ramp; a magnitude stays at zero once it is there. Phases are not brought
/// back into one turn. Any thread.
KES_EXPORT OutputState follow(const OutputState& outputs, const OutputRamp& ramp, DeviceTime time);

/// A binary input in a state, or reaching it. Inputs count from 1.
struct InputCondition {
    unsigned input = 1;
    bool isClosed = true;
    /// Only a change to the state within the step counts. Otherwise an input that has the state when the step
    /// begins fulfils the condition at once.
    bool isEdge = false;

    bool operator==(const InputCondition&) const = default;
};

/// What ends a step before its time.
struct EndCondition {
    enum class Join { Any, All };

    EndCondition(InputCondition condition) : inputs{condition} {}
    EndCondition(std::vector<InputCondition> conditions, Join how, DeviceTime debounceTime = DeviceTime(0))
        : inputs(std::move(conditions)), join(how), debounce(debounceTime)
    {}

    /// At least one.
    std::vector<InputCondition> inputs;
    /// Whether one of the inputs is enough or all are wanted at the same time.
    Join join = Join::Any;
    /// How long the condition has to hold without interruption before it ends the step: contacts bounce. 0 to
    /// 10 s. The input events keep the times of the contacts themselves.
    DeviceTime debounce{0};

    bool operator==(const EndCondition&) const = default;
};

/// One step of a sequence: outputs that stand (or follow a ramp) for a time, or until a condition is
/// fulfilled.
struct OutputStep {
    /// At the beginning of the step.
    OutputState outputs;
    /// Above zero, at most one day.
    DeviceTime duration{0};
    std::optional<EndCondition> endOn{};
    OutputRamp ramp{};
    /// Point on wave: the step begins when the reference wave of the voltages, running on at the frequency of
    /// the step before (before the first one: of the outputs that stand; 50 Hz when all are zero), has this
    /// angle in degrees; at most one period later than without. Meanwhile the outputs stay as they are.
    std::optional<double> faultDegrees{};
};

/// Steps that the device runs on its own clock, one after the other; afterwards all outputs are zero and all
/// binary outputs open.
using OutputSequence = std::vector<OutputStep>;

/// What a device can put out and read. Values outside are refused with an error, never clipped.
struct OutputLimits {
    /// Of each current and voltage output, effective value.
    double maximumAmperes = 32.0;
    double maximumVolts = 300.0;
    double minimumHertz = 10.0;
    double maximumHertz = 1000.0;
    /// How many there are; they count from 1.
    unsigned binaryInputs = 8;
    unsigned binaryOutputs = 4;
    /// What one current output can feed; more than that is an overload.
    double maximumVoltAmperes = 450.0;
    /// Duty: what one current output can carry for ever, and for how long it can carry more, counted with
    /// cooling at the same pace; after that it overheats.
    double continuousAmperes = 32.0;
    DeviceTime overloadDuration = std::chrono::seconds(10);
    /// Steps of a sequence.
    std::size_t maximumSteps = 10000;
    /// After this time without its controller the device has switched everything off by itself. At most
    /// 750 ms are accepted: it is noticed after up to two seconds that a device does not answer, and nothing
    /// may be on after three.
    std::chrono::milliseconds releaseTime{500};

    bool operator==(const OutputLimits&) const = default;
};

/// When the armed sequence of a device begins.
struct StartMoment {
    /// On the common clock.
    std::optional<CommonTime> at{};
    /// Or when this binary input closes; counts from 1. Without either: at once.
    std::optional<unsigned> input{};
};

/// A device's clock and the common one, read at the same moment.
struct ClockReading {
    DeviceTime device{0};
    CommonTime common{0};
};

} // namespace KesDriver
