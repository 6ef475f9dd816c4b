#pragma once

#include <KesMeasure/Withstand.h>
#include <KesTree/Node.h>
#include <KesTreeRelay/RelayNodes.h>

namespace Overcurrent {

using CurveKind = KesTree::RelayNodes::OvercurrentCurve;
using KesTree::RelayNodes::RampContactKind;
using KesTree::RelayNodes::TimeToleranceKind;

/// The settings of the relay under test, as a value: what the test object's tree holds at one moment. A run,
/// a chart and a report work on such a copy. The defaults are those of a new archive.
struct RelaySettings {
    /// In and Is, in amperes.
    double nominalCurrent = 1.0;
    double settingCurrent = 1.0;
    /// TMS; plays no part for the definite-time curve.
    double timeMultiplier = 1.0;
    CurveKind curve = CurveKind::StandardInverse;
    /// In seconds; plays a part for the definite-time curve only.
    double definiteTime = 1.0;
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

    KesMeasure::Withstand getWithstand() const
    {
        return {nominalCurrent, continuousWithstand, tenSecondWithstand, oneSecondWithstand};
    }
    bool hasRamps() const { return rampContact != RampContactKind::NoRamps; }
    /// The contact that tells pick-up and drop-off.
    unsigned getRampInput() const
    {
        return rampContact == RampContactKind::ByStartContact ? startInput : tripInput;
    }

    /// What an overcurrent stage (`RelayNodes::overcurrentStage`) holds. GUI thread.
    static RelaySettings fromNode(const KesTree::Node& stage);
    /// Puts the settings into such a stage. False when it refuses one of them; it is to be filled anew then.
    bool putInto(KesTree::Node& stage) const;

    bool operator==(const RelaySettings&) const = default;
};

} // namespace Overcurrent
