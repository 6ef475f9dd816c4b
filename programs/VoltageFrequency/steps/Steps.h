#pragma once

#include <VoltageFrequency/data/Settings.h>

#include <KesDriver/Outputs.h>
#include <KesMeasure/StepRunner.h>

#include <cmath>
#include <optional>

/// The steps of the measurements and what the device has reported of them. Voltages are put out in three
/// symmetrical phases; the relay sees nominal quantities before each measurement until its contacts are open.
/// Between two sequences there is no voltage, so each begins with that, too.
/// Any thread.
namespace VoltageFrequency::Steps {

/// A ramp's ends and how fast it goes, in the stage's unit.
struct Ramp {
    double from = 0.0;
    double to = 0.0;
    /// Above zero, per second.
    double rate = 0.0;

    double valueAt(KesDriver::DeviceTime time) const;
    double getSeconds() const { return std::fabs(to - from) / rate; }
};

/// Where pick-up and drop-off are sought: three tolerances around the expected value, not beyond the nominal
/// one.
Ramp pickUpRamp(const Settings& settings, StageKind kind);
Ramp dropOffRamp(const Settings& settings, StageKind kind);
/// The value that makes a stage operate at its delay; of a rate, the rate.
double operateValue(const Settings& settings, StageKind kind);
/// How long a stage is waited for.
double operateLimit(const Settings& settings, StageKind kind);

/// The relay has to rest with nominal quantities.
KesMeasure::StepGuard guard(const Settings& settings);

/// Each is a whole sequence. Of the voltages and frequencies:
KesDriver::OutputSequence pickUp(const Settings& settings, StageKind kind);
KesDriver::OutputSequence dropOff(const Settings& settings, StageKind kind);
/// Of any stage:
KesDriver::OutputSequence operateTime(const Settings& settings, StageKind kind);
/// Of the rate: one that stands for `ratePulse` seconds, alone or behind one at which the stage has started.
KesDriver::OutputSequence ratePulseOf(const Settings& settings, double hertzPerSecond);
KesDriver::OutputSequence rateDropOff(const Settings& settings, double hertzPerSecond);
inline constexpr double ratePulse = 0.5;
/// In which a rate starts the stage, and in which the next one lets it drop off.
inline constexpr double rateHold = 0.3;

/// The step in which the measured change comes, in each of those sequences.
inline constexpr std::size_t pickUpStep = 3;
inline constexpr std::size_t dropOffStep = 4;
inline constexpr std::size_t operateStep = 2;
inline constexpr std::size_t rateDropOffStep = 3;

/// From the step's beginning to the contact's change to the state, in it or a later one, bounces left out.
std::optional<KesDriver::DeviceTime> changeIn(const KesMeasure::SequenceRecord& record, std::size_t step,
                                              KesDriver::InputCondition condition);
/// Whether the contacts were open before the relay saw anything but nominal quantities.
bool hasReset(const KesMeasure::SequenceRecord& record, const Settings& settings);

} // namespace VoltageFrequency::Steps
