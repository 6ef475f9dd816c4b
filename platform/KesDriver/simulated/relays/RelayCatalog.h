#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <memory>
#include <string>
#include <vector>

/// The relays of the simulated bench by their names, to choose one by text. Any thread.
namespace KesDriver::RelayCatalog {

/// Such as "overcurrent", in alphabetical order.
KES_EXPORT std::vector<std::string> getKinds();

/// Makes a relay of a kind at rest. Each setting is "<name>=<value>"; one that is not given has its default.
/// "overcurrent": for each stage `pickup` (A; 0: not used), `tms`, `curve` (SI, VI, EI, LTI, DT, IEEE-MI,
/// IEEE-VI, IEEE-EI or TABLE), `time` (s, of DT), `table` ("2:10;5:3.5") and `direction` (NONE, FORWARD,
/// REVERSE); those of the second and third stage end in 2 and 3, those of the residual one in N. `angle`
/// (degrees, of the directional stages), `connection` (what the outputs feed: PHASES, or all of them A, B, C
/// or N), `trip` and `start` (the inputs of the contacts).
/// "voltage-frequency": `nominal` (V, phase to phase), the stages `U<`, `U>` (V), `f<`, `f>` (Hz) and `rate`
/// (Hz/s, below zero for a falling frequency), 0 for a stage that is not used, their delays `tU<`, `tU>`,
/// `tf<`, `tf>` and `trate` (s), `trip` and `start`.
/// A refusal (-222) names what is wrong.
KES_EXPORT Kes::Result make(const std::string& kind, const std::vector<std::string>& settings,
                            std::shared_ptr<ISimulatedTestObject>& relay);

} // namespace KesDriver::RelayCatalog
