#pragma once

#include <KesTree/Node.h>

#include <memory>

namespace KesTree::RelayNodes {

/// Paths of the nodes of an overcurrent stage, for `Node::find`.
inline constexpr const char* NominalCurrent = "nominalCurrent";
inline constexpr const char* SettingCurrent = "settingCurrent";
inline constexpr const char* TimeMultiplier = "timeMultiplier";
inline constexpr const char* Curve = "curve";
inline constexpr const char* DefiniteTime = "definiteTime";
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

/// The choices of the node `Curve`, in order.
///
/// Standard, very and extremely inverse are A, B and C of IEC 60255-151. The long-time inverse stands beside
/// them in relays, but not in that standard: it comes from British practice (BS 142). The last three are
/// those of IEEE C37.112.
enum OvercurrentCurve : std::size_t {
    StandardInverse,
    VeryInverse,
    ExtremelyInverse,
    LongTimeInverse,
    DefiniteTimeCurve,
    IeeeModeratelyInverse,
    IeeeVeryInverse,
    IeeeExtremelyInverse
};

/// The choices of the node `ToleranceKind`: one relative tolerance at all currents, or the assigned error of
/// IEC 60255-151, which holds from 10 times Is on and grows below.
enum TimeToleranceKind : std::size_t { SameTolerance, AssignedError };

/// The choices of the node `RampContact`: which contact tells pick-up and drop-off. Without one they are not
/// measured.
enum RampContactKind : std::size_t { ByStartContact, ByTripContact, NoRamps };

/// The setting current is at most this many times the nominal current.
inline constexpr double MaximumSettingRatio = 40.0;

/// A time-overcurrent stage: a group "overcurrent" with nominal current (A), setting current Is (A), time
/// multiplier, curve, definite operate time (s), the operate-time tolerance in percent and milliseconds, the
/// tolerance of the current (%); a group of the contacts with their inputs, debounce time (ms) and reset time
/// (s); a group of the current input with what it withstands for ever, 10 s and 1 s (multiples of the nominal
/// current); and the nameplate (`Nameplate`).
///
/// Beyond the ranges of the values: Is is at most `MaximumSettingRatio` times the nominal current, and one of
/// the two time tolerances is above zero, since no measured time hits the expected one exactly. The contacts
/// have different inputs, and a current that is withstood for a shorter time is larger. The time multiplier
/// plays no part with the definite-time curve, the definite time none with the others, the input of the start
/// contact none without it (`Node::isUsed`).
KES_EXPORT std::unique_ptr<Node> overcurrentStage();

} // namespace KesTree::RelayNodes
