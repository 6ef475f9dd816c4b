#pragma once

#include <KesTree/Node.h>

#include <memory>

namespace KesTree::RelayNodes {

/// Paths of the nodes of an overcurrent relay, for `Node::find`. GUI thread.
inline constexpr const char* NominalCurrent = "nominalCurrent";
/// Those of the first stage.
inline constexpr const char* SettingCurrent = "stage1/settingCurrent";
inline constexpr const char* TimeMultiplier = "stage1/timeMultiplier";
inline constexpr const char* Curve = "stage1/curve";
inline constexpr const char* DefiniteTime = "stage1/definiteTime";
inline constexpr const char* ToleranceKind = "toleranceKind";
inline constexpr const char* TolerancePercent = "tolerancePercent";
inline constexpr const char* ToleranceMilliseconds = "toleranceMilliseconds";
inline constexpr const char* CurrentTolerance = "currentTolerance";
inline constexpr const char* TripInput = "contacts/tripInput";
inline constexpr const char* RampContact = "contacts/rampContact";
inline constexpr const char* StartInput = "contacts/startInput";
inline constexpr const char* Debounce = "contacts/debounce";
inline constexpr const char* ResetTime = "contacts/resetTime";
inline constexpr const char* ContinuousWithstand = "currentInput/continuousWithstand";
inline constexpr const char* TenSecondWithstand = "currentInput/tenSecondWithstand";
inline constexpr const char* OneSecondWithstand = "currentInput/oneSecondWithstand";

inline constexpr const char* CharacteristicAngle = "polarisation/characteristicAngle";
inline constexpr const char* NominalVoltage = "polarisation/nominalVoltage";

/// The groups of the stages I>, I>>, I>>> and I0>, the last one for the residual current.
inline constexpr const char* OvercurrentStages[] = {"stage1", "stage2", "stage3", "residualStage"};
/// Paths within the group of a stage.
inline constexpr const char* StageUsed = "used";
inline constexpr const char* StageSetting = "settingCurrent";
inline constexpr const char* StageCurve = "curve";
inline constexpr const char* StageMultiplier = "timeMultiplier";
inline constexpr const char* StageTime = "definiteTime";
inline constexpr const char* StageTable = "table";
inline constexpr const char* StageDirection = "direction";

/// The choices of the node `StageDirection`.
enum DirectionKind : std::size_t { NonDirectional, ForwardOnly, ReverseOnly };

/// The choices of the node `StageCurve`, in order.
///
/// Standard, very and extremely inverse are A, B and C of IEC 60255-151. The long-time inverse stands beside
/// them in relays, but not in that standard: it comes from British practice (BS 142). Three are those of IEEE
/// C37.112, and the last one is what the node `StageTable` holds (`CurveTable`).
enum OvercurrentCurve : std::size_t {
    StandardInverse,
    VeryInverse,
    ExtremelyInverse,
    LongTimeInverse,
    DefiniteTimeCurve,
    IeeeModeratelyInverse,
    IeeeVeryInverse,
    IeeeExtremelyInverse,
    TableCurve
};

/// The choices of the node `ToleranceKind`: one relative tolerance at all currents, or the assigned error of
/// IEC 60255-151, which holds from 10 times Is on and grows below.
enum TimeToleranceKind : std::size_t { SameTolerance, AssignedError };

/// The choices of the node `RampContact`: which contact shows pick-up and drop-off. Without one they are not
/// measured.
enum RampContactKind : std::size_t { ByStartContact, ByTripContact, NoRamps };

/// The setting current is at most this many times the nominal current.
inline constexpr double MaximumSettingRatio = 40.0;

/// An overcurrent relay: a group "overcurrent" with the nominal current (A); a group for each stage; the
/// operate-time tolerance in percent and milliseconds and the tolerance of the current (%); a group of the
/// directional elements with their characteristic angle (degrees) and the nominal voltage (V, phase to
/// phase); a group of the contacts with their inputs, debounce time (ms) and reset time (s); a group of the
/// current input with what it withstands for ever, 10 s and 1 s (multiples of the nominal current); and the
/// nameplate (`Nameplate`).
///
/// A stage has: whether it is in use (the first one is at first), its setting current Is (A), curve, time
/// multiplier, definite operate time (s), table and direction. The characteristic angle is that of the fault
/// current against the voltage of the faulted loop, below zero when the current lags.
///
/// Beyond the ranges of the values: one stage at least is in use, Is of a stage in use is at most
/// `MaximumSettingRatio` times the nominal current, and one of the two time tolerances is above zero, since
/// no measured time hits the expected one exactly. The contacts have different inputs, and a current that is
/// withstood for a shorter time is larger. Values of a stage that is not in use, the angle without a
/// directional stage, and of time multiplier, definite time and table those that the curve does not need play
/// no part, nor does the input of the start contact without it (`Node::isUsed`).
KES_EXPORT std::unique_ptr<Node> overcurrentStage();

} // namespace KesTree::RelayNodes
