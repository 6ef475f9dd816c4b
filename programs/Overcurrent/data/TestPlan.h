#pragma once

#include <Overcurrent/data/Fault.h>
#include <Overcurrent/data/RelaySettings.h>

#include <KesCommon/Result.h>
#include <KesDriver/Outputs.h>
#include <KesMeasure/SinglesXml.h>

#include <cstddef>
#include <vector>

namespace Overcurrent {

/// A current that goes from one multiple of the lowest pick-up current (`StageTimes::pickUpCurrent`) to
/// another in equal steps, each of which stands for a time.
struct Ramp {
    double from = 0.0;
    double to = 0.0;
    /// A multiple of Is, above zero, whatever the direction.
    double step = 0.01;
    /// In seconds.
    double dwell = 0.2;

    /// The multiples in order, both ends included; the last step may be shorter. Only for a valid ramp.
    std::vector<double> getMultiples() const;
    /// What `getMultiples` would give; not finite or huge for a ramp without sense.
    double countSteps() const;

    bool operator==(const Ramp&) const = default;
};

/// A point of a plan: a fault, and its current as a multiple of Is (`StageTimes::referenceCurrent`).
struct PlannedPoint {
    Fault fault = Fault::A;
    double multiple = 0.0;

    bool operator==(const PlannedPoint&) const = default;
};

/// What a test does: the currents to try and how long to wait. A value; the defaults are those of a new
/// archive.
struct TestPlan {
    static constexpr std::size_t maximumPoints = 100;
    static constexpr double maximumMultiple = 100.0;
    static constexpr std::size_t maximumRampSteps = 2000;
    static constexpr unsigned maximumRepetitions = KesMeasure::SinglesXml::mostRepetitions;
    /// Current outputs of a device.
    static constexpr unsigned outputCount = 3;

    /// The multiples of Is, in the order of the test.
    std::vector<double> multiples{1.5, 2, 3, 5, 7, 10, 15, 20};
    /// Each of the multiples is tried with each fault; in the order of `Fault`.
    std::vector<Fault> faults{Fault::A};
    FaultDirection direction = FaultDirection::Forward;
    /// How many outputs together feed one input of the relay, each with its share of the current: 1 to 3.
    /// With more than one, one input is wired only.
    unsigned outputsPerPhase = 1;
    /// How long to wait for the trip contact at most, in seconds.
    double timeout = 60.0;
    /// Before each point and each ramp: no current for at least this long, in seconds. The reset time of the
    /// relay may make it longer.
    double pause = 0.5;
    Ramp pickUp{0.9, 1.2, 0.01, 0.2};
    Ramp dropOff{1.2, 0.8, 0.01, 0.2};
    /// How far the pick-up value may lie from Is.
    double pickUpTolerancePercent = 5.0;
    /// The least ratio of the drop-off value to the pick-up value.
    double minimumRatio = 0.9;
    /// How many times each point is measured, 1 to 20.
    unsigned repetitions = 1;
    /// Whether the test continues after a measurement at which the relay did not do what was waited for.
    bool goesOn = false;

    /// Fault by fault.
    std::vector<PlannedPoint> getPoints() const;
    std::size_t countPoints() const { return faults.size() * multiples.size(); }
    FaultCase caseOf(Fault fault) const
    {
        return {fault, direction, fault == Fault::N && outputsPerPhase > 1};
    }
    /// The one with which pick-up and drop-off are measured: the first. Only of a plan with faults.
    FaultCase getRampCase() const { return caseOf(faults.front()); }
    /// The largest share of a fault's current at one output.
    double getOutputShare(Fault fault) const;

    /// Whether the values make sense; the failure says which one does not, and why. Any thread.
    Kes::Result check() const;
    /// Whether a relay with these settings has operated for certain when its time is over, beyond `check`.
    Kes::Result checkTimes(const RelaySettings& settings) const;
    /// Whether a relay with these settings can be tested with the plan without harm, beyond `checkTimes`; and
    /// on a device with these limits. Any thread.
    Kes::Result check(const RelaySettings& settings) const;
    Kes::Result check(const RelaySettings& settings, const KesDriver::OutputLimits& limits) const;

    bool operator==(const TestPlan&) const = default;
};

} // namespace Overcurrent
