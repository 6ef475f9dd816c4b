#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/Outputs.h>
#include <KesMeasure/StepRunner.h>
#include <KesMeasure/TestState.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace KesMeasure {

/// What one measurement gave. In the unit of its plan; no value unless measured.
struct Reading {
    MeasureState state = MeasureState::Measured;
    /// The mean when it was measured several times.
    double value = 0.0;
    /// The single values then, in order; those before it when the last one was not measured.
    std::vector<double> singles{};

    /// Of several measurements of the same, the last of which may be one that was not measured.
    KES_EXPORT static Reading ofSingles(std::vector<double> singles, const Reading& last);

    bool operator==(const Reading&) const = default;
};

/// A value to be measured, with what is expected of it and how to get it. A value.
struct PlannedMeasurement {
    /// Names it in files: ASCII letters, digits and dots; unique within a test.
    std::string id;
    /// What is measured, and what of it, as people read it.
    std::string object;
    std::string quantity;
    std::string unit;
    int decimals = 3;
    double expected = 0.0;
    /// The band that the value has to lie in, ends included; the expected value lies within.
    double lower = 0.0;
    double upper = 0.0;
    /// How long it is expected to take; for the progress.
    double seconds = 0.0;
    /// What has to hold before each of its sequences. One that may not begin is not put out: the reading is
    /// `MeasureState::NotReset` then.
    StepGuard guard;
    /// One after the other, until one gives a reading. When none does, it is this one.
    std::vector<KesDriver::OutputSequence> sequences;
    MeasureState withoutReading = MeasureState::NoOperation;
    /// What the sequence of that number shows; nothing: continue with the next one. Start thread. Throws
    /// `std::runtime_error` with a text for the user when the device's times make no sense.
    std::function<std::optional<Reading>(std::size_t sequence, const SequenceRecord& record)> read;

    bool isWithin(double value) const { return value >= lower && value <= upper; }
    /// Of several single values the worst counts.
    bool isPassed(const Reading& reading) const
    {
        const auto& singles = reading.singles;
        return reading.state == MeasureState::Measured && isWithin(reading.value) &&
               std::all_of(singles.begin(), singles.end(), [this](double value) { return isWithin(value); });
    }
};

using MeasurementPlan = std::vector<PlannedMeasurement>;

} // namespace KesMeasure
