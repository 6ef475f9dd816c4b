#pragma once

#include <KesTreeRelay/CurveTable.h>
#include <KesTreeRelay/RelayNodes.h>

#include <array>
#include <cstddef>

namespace Overcurrent {

using CurveKind = KesTree::RelayNodes::OvercurrentCurve;
using KesTree::RelayNodes::DirectionKind;

/// The stages of a relay, in the order of the test object.
enum class StageId : std::size_t { First, Second, Third, Residual };

inline constexpr std::array allStages{StageId::First, StageId::Second, StageId::Third, StageId::Residual};

/// The settings of one stage, as a value.
struct Stage {
    bool isUsed = false;
    /// Is, in amperes; of the residual stage in residual current.
    double settingCurrent = 1.0;
    /// Which formula or table gives the operate time; see `OperateCurve`.
    CurveKind curve = CurveKind::StandardInverse;
    /// TMS; plays a part for the inverse curves only.
    double timeMultiplier = 1.0;
    /// In seconds; plays a part for the definite-time curve only.
    double definiteTime = 1.0;
    /// Plays a part for the curve that is a table only.
    KesTree::CurveTable::Pairs table{{2.0, 10.0}, {5.0, 3.5}, {10.0, 1.2}};
    DirectionKind direction = DirectionKind::NonDirectional;

    bool operator==(const Stage&) const = default;
};

} // namespace Overcurrent
