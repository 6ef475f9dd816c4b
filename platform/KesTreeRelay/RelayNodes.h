#pragma once

#include <KesTree/Node.h>

#include <memory>

namespace KesTree::RelayNodes {

/// Node ids of an overcurrent stage, for `Node::find`.
inline constexpr const char* NominalCurrent = "nominalCurrent";
inline constexpr const char* SettingCurrent = "settingCurrent";
inline constexpr const char* TimeMultiplier = "timeMultiplier";
inline constexpr const char* Curve = "curve";
inline constexpr const char* DefiniteTime = "definiteTime";
inline constexpr const char* TolerancePercent = "tolerancePercent";
inline constexpr const char* ToleranceMilliseconds = "toleranceMilliseconds";

/// The choices of the node `Curve`, in order (IEC 60255-151, with its usual names).
enum OvercurrentCurve : std::size_t {
    StandardInverse,
    VeryInverse,
    ExtremelyInverse,
    LongTimeInverse,
    DefiniteTimeCurve
};

/// The setting current is at most this many times the nominal current.
inline constexpr double MaximumSettingRatio = 40.0;

/// A time-overcurrent stage: a group "overcurrent" with nominal current (A), setting current Is (A), time
/// multiplier, curve, definite operate time (s), and the operate-time tolerance in percent and milliseconds.
///
/// Beyond the ranges of the values: Is is at most `MaximumSettingRatio` times the nominal current, and one of
/// the two tolerances is above zero, since no measured time hits the expected one exactly. The time
/// multiplier plays no part with the definite-time curve, the definite time none with the others
/// (`Node::isUsed`).
KES_EXPORT std::unique_ptr<Node> overcurrentStage();

} // namespace KesTree::RelayNodes
