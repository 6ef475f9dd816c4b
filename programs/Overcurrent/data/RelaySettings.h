#pragma once

#include <Overcurrent/data/Stage.h>

#include <KesMeasure/Withstand.h>
#include <KesTree/Node.h>

#include <array>

namespace Overcurrent {

using KesTree::RelayNodes::RampContactKind;
using KesTree::RelayNodes::TimeToleranceKind;

/// The settings of the relay under test, as a value: what the test object's tree holds at one moment. A run,
/// a chart and a report work on such a copy. The defaults are those of a new archive.
struct RelaySettings {
    /// In, in amperes.
    double nominalCurrent = 1.0;
    std::array<Stage, allStages.size()> stages{
        Stage{true},
        Stage{false, 5.0, CurveKind::DefiniteTimeCurve, 1.0, 0.3},
        Stage{false, 10.0, CurveKind::DefiniteTimeCurve, 1.0, 0.05},
        Stage{false, 0.2, CurveKind::DefiniteTimeCurve, 1.0, 0.5},
    };
    /// Of the directional stages: that of the fault current against the voltage of the faulted loop, in
    /// degrees.
    double characteristicAngle = -45.0;
    /// In volts, phase to phase. Plays a part with a directional stage only.
    double nominalVoltage = 100.0;
    /// The operate-time tolerance is the larger one of both. The percentage is the assigned error, when the
    /// kind says so.
    TimeToleranceKind toleranceKind = TimeToleranceKind::SameTolerance;
    double tolerancePercent = 5.0;
    double toleranceMilliseconds = 30.0;
    /// How far the relay may be off in measuring the current.
    double currentTolerancePercent = 2.0;

    unsigned tripInput = 1;
    RampContactKind rampContact = RampContactKind::ByStartContact;
    /// Plays a part with the start contact only.
    unsigned startInput = 2;
    double debounceMilliseconds = 5.0;
    /// In seconds without current, after which the relay is as at rest and its contacts are open.
    double resetTime = 0.5;

    /// In multiples of In.
    double continuousWithstand = 4.0;
    double tenSecondWithstand = 30.0;
    double oneSecondWithstand = 100.0;

    Stage& operator[](StageId stage) { return stages[static_cast<std::size_t>(stage)]; }
    const Stage& operator[](StageId stage) const { return stages[static_cast<std::size_t>(stage)]; }
    /// Whether a stage in use needs voltages.
    bool isDirectional() const;

    KesMeasure::Withstand getWithstand() const
    {
        return {nominalCurrent, continuousWithstand, tenSecondWithstand, oneSecondWithstand};
    }
    bool hasRamps() const { return rampContact != RampContactKind::NoRamps; }
    /// The contact that shows pick-up and drop-off.
    unsigned getRampInput() const
    {
        return rampContact == RampContactKind::ByStartContact ? startInput : tripInput;
    }

    /// What an overcurrent relay (`RelayNodes::overcurrentStage`) holds. GUI thread.
    static RelaySettings fromNode(const KesTree::Node& relay);
    /// Puts the settings into such a relay. False when it refuses one of them; it must then be filled again.
    bool putInto(KesTree::Node& relay) const;

    bool operator==(const RelaySettings&) const = default;
};

} // namespace Overcurrent
