#pragma once

#include <KesTree/Node.h>
#include <KesTreeRelay/RelayNodes.h>

namespace Overcurrent {

using CurveKind = KesTree::RelayNodes::OvercurrentCurve;

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
    /// The operate-time tolerance is the larger one of both.
    double tolerancePercent = 5.0;
    double toleranceMilliseconds = 30.0;

    /// What an overcurrent stage (`RelayNodes::overcurrentStage`) holds. GUI thread.
    static RelaySettings fromNode(const KesTree::Node& stage);
    /// Puts the settings into such a stage. False when it refuses one of them; it is to be filled anew then.
    bool putInto(KesTree::Node& stage) const;

    bool operator==(const RelaySettings&) const = default;
};

} // namespace Overcurrent
