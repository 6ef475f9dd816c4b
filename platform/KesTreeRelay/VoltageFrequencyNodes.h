#pragma once

#include <KesTree/Node.h>

#include <memory>

namespace KesTree::VoltageFrequencyNodes {

/// Node ids of a voltage and frequency relay, for `Node::find`. GUI thread. Those of a stage follow the
/// stage's: "undervoltage/setting". Nominal quantities and inputs are in the group "relay".
inline constexpr const char* RelayGroup = "relay";
inline constexpr const char* NominalVoltage = "nominalVoltage";
inline constexpr const char* NominalFrequency = "nominalFrequency";
inline constexpr const char* TripInput = "tripInput";
inline constexpr const char* StartInput = "startInput";

inline constexpr const char* Undervoltage = "undervoltage";
inline constexpr const char* Overvoltage = "overvoltage";
inline constexpr const char* Underfrequency = "underfrequency";
inline constexpr const char* Overfrequency = "overfrequency";
inline constexpr const char* FrequencyRate = "frequencyRate";

inline constexpr const char* StageUsed = "used";
inline constexpr const char* StageSetting = "setting";
inline constexpr const char* StageDirection = "direction";
inline constexpr const char* StageDelay = "delay";
inline constexpr const char* StageDropOff = "dropOff";
inline constexpr const char* StageTolerance = "tolerance";

/// The choices of the node `StageDirection`.
enum RateDirection : std::size_t { FallingFrequency, RisingFrequency };

/// A voltage and frequency relay: the group "relay" with nominal voltage (V, phase to phase), nominal
/// frequency (Hz) and the binary inputs of its trip and start contacts; and a group for each stage, 27 under-
/// and 59 overvoltage, 81 under- and overfrequency, 81R rate of change of frequency.
///
/// A stage has: whether it is used, its setting (V, Hz, Hz/s), its delay (s), the rate its direction, its
/// drop-off (a difference in Hz for the frequencies, a ratio for the others), the tolerance of its value
/// (percent; Hz for the frequencies) and those of its time, `TolerancePercent` and `ToleranceMilliseconds` of
/// `RelayNodes`, one of which is above zero. The values of a stage that is not used play no part
/// (`Node::isUsed`). The last group is the nameplate (`Nameplate`).
KES_EXPORT std::unique_ptr<Node> voltageFrequencyRelay();

} // namespace KesTree::VoltageFrequencyNodes
