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

/// Makes a relay of a kind at rest. Each setting is "<name>=<value>"; one that is not given has its
/// default. "overcurrent": for each stage `pickup` (A; 0: not used), `tms`, `curve` (SI, VI, EI, LTI, DT,
/// IEEE-MI, IEEE-VI, IEEE-EI, TABLE), `time` (s, of DT), `table` ("2:10;5:3.5"), `direction` (NONE,
/// FORWARD, REVERSE), all with 2, 3 or N (residual) behind for the other stages; `angle` (degrees);
/// `connection` (PHASES, A, B, C, N). "voltage-frequency": `nominal` (V), the stages `U<`, `U>` (V), `f<`,
/// `f>` (Hz), `rate` (Hz/s), 0: not used, and their delays `tU<` ... `trate` (s). Both: `trip` and `start`,
/// the inputs. A refusal (-222) names what is wrong.
KES_EXPORT Kes::Result make(const std::string& kind, const std::vector<std::string>& settings,
                            std::shared_ptr<ISimulatedTestObject>& relay);

} // namespace KesDriver::RelayCatalog
