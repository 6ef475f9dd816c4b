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

/// A time-overcurrent stage: a group "overcurrent" with nominal current (A), setting current Is (A), time
/// multiplier, curve (IEC 60255-151: standard inverse, very inverse, extremely inverse, long-time inverse;
/// definite time), definite operate time (s), and the operate-time tolerance in percent and milliseconds.
KES_EXPORT std::unique_ptr<Node> overcurrentStage();

} // namespace KesTree::RelayNodes
