#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace KesDriver {

/// Time on a device's own clock, in microseconds since the device was switched on.
using DeviceTime = std::chrono::microseconds;

/// A sinusoidal output: effective value (amperes or volts, never negative) and phase in degrees.
struct Phasor {
    double magnitude = 0.0;
    double degrees = 0.0;

    bool operator==(const Phasor&) const = default;
};

/// What a device puts out: three currents in amperes, three voltages in volts, one frequency in hertz.
struct OutputState {
    std::array<Phasor, 3> currents;
    std::array<Phasor, 3> voltages;
    double frequency = 50.0;

    bool operator==(const OutputState&) const = default;
};

/// What a device can put out and read. Values outside are refused with an error, never clipped.
struct OutputLimits {
    double maximumAmperes = 32.0;
    double maximumVolts = 300.0;
    double minimumHertz = 10.0;
    double maximumHertz = 1000.0;
    unsigned binaryInputs = 8;
};

/// A binary input reaching a state. Inputs count from 1.
struct InputCondition {
    unsigned input = 1;
    bool isClosed = true;
};

/// One step of a sequence: outputs that stand for a time, or until a binary input has the wanted state.
/// An input that already has that state when the step begins ends the step at once.
struct OutputStep {
    OutputState outputs;
    /// Above zero, at most one day.
    DeviceTime duration{0};
    std::optional<InputCondition> endOn;
};

/// Steps that the device runs on its own clock, one after the other; afterwards all outputs are zero.
using OutputSequence = std::vector<OutputStep>;

/// A binary input has changed.
struct InputEvent {
    unsigned input = 1;
    bool isClosed = false;
    DeviceTime time{0};
};

/// A step of the running sequence has begun, counted from 0.
struct StepEvent {
    std::size_t step = 0;
    DeviceTime time{0};
};

/// The sequence has ended and the outputs are zero.
struct SequenceEvent {
    /// All steps have run; false when the sequence was stopped or the device had a fault.
    bool isComplete = false;
    DeviceTime time{0};
};

} // namespace KesDriver
