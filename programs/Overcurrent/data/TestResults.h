#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <KesDriver/Outputs.h>
#include <KesMeasure/MeasuredTest.h>

#include <optional>
#include <vector>

namespace Overcurrent {

using KesMeasure::MeasureState;
using KesMeasure::Origin;
using KesMeasure::RunEnd;

/// The measured operate time of a point.
struct PointResult : PlannedPoint {
    MeasureState state = MeasureState::Measured;
    /// On the device's clock, from the beginning of the current to the first closing of the trip contact;
    /// only when measured.
    KesDriver::DeviceTime time{0};
    /// The single times when it was measured several times, in order; `time` is their mean then. Those before
    /// the last when that one was not measured.
    std::vector<KesDriver::DeviceTime> singles{};

    /// The times that were measured; the state is that of the last one.
    void takeSingles(std::vector<KesDriver::DeviceTime> times);

    bool operator==(const PointResult&) const = default;
};

/// The current at which a contact closed or opened on a ramp: between two steps of it.
struct RampResult {
    MeasureState state = MeasureState::Measured;
    /// The first step with the change, as a multiple as in `Ramp`; only when measured.
    double multiple = 0.0;
    /// The last step without it.
    double without = 0.0;

    /// The middle of both, which is neither too high nor too low as a rule.
    double getValue() const { return (multiple + without) / 2.0; }

    bool operator==(const RampResult&) const = default;
};

/// What a test has measured, with the settings and the plan that it was made with: they may be edited
/// afterwards. A value. Everything that can be calculated from the measured values is in `Evaluation`.
struct TestResults : KesMeasure::MeasuredTest {
    RelaySettings settings;
    TestPlan plan;
    /// The first ones of `TestPlan::getPoints`, as far as the test has come.
    std::vector<PointResult> points;
    /// Measured when all points are; drop-off after pick-up.
    std::optional<RampResult> pickUp;
    std::optional<RampResult> dropOff;

    bool operator==(const TestResults&) const = default;
};

/// Those of a test that has not measured anything yet.
inline TestResults resultsOf(const RelaySettings& settings, const TestPlan& plan)
{
    TestResults results;
    results.settings = settings;
    results.plan = plan;
    return results;
}

/// Whether there is a result for everything that the plan wants measured.
inline bool isWhole(const TestResults& results)
{
    const bool areRampsWhole = !results.settings.hasRamps() || (results.pickUp && results.dropOff);
    return results.points.size() == results.plan.countPoints() && areRampsWhole;
}

} // namespace Overcurrent
