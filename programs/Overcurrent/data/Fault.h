#pragma once

#include <KesDriver/Outputs.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace Overcurrent {

/// Which inputs of the relay carry the fault's current. N is a residual current without a fault of a phase:
/// a third of it in each of the three phases, so that the residual input carries the whole.
enum class Fault : std::size_t { A, B, C, AB, BC, CA, ABC, N };

inline constexpr std::array allFaults{Fault::A,  Fault::B,  Fault::C,   Fault::AB,
                                      Fault::BC, Fault::CA, Fault::ABC, Fault::N};

/// As seen from the relay, for its directional stages.
enum class FaultDirection { Forward, Reverse };

/// What a measurement puts on the relay. A value.
struct FaultCase {
    Fault fault = Fault::A;
    FaultDirection direction = FaultDirection::Forward;
    /// The current is put into the residual input and passes no phase.
    bool isInResidualInput = false;

    bool operator==(const FaultCase&) const = default;
};

/// What is known of each kind of fault. Any thread.
namespace Faults {

/// The phases' currents for a fault current of 1 that is in phase with the voltage of the faulted loop; the
/// angles are counted from the voltage of phase A.
const std::array<KesDriver::Phasor, 3>& currents(Fault fault);
/// How much of the fault's current the phase stages see: the largest of the phases.
double phaseShare(Fault fault);
/// How much of it the residual stage sees: the sum of the phases.
double residualShare(Fault fault);
/// How many phases carry current.
unsigned countPhases(Fault fault);

/// A healthy system of voltages, 1 in each phase; with a fault to earth that of the faulted phase is half, so
/// that there is a residual voltage too.
std::array<KesDriver::Phasor, 3> voltages(Fault fault);

/// "AB"; the same in files and for people, but for the script in Russian.
std::string wordOf(Fault fault);
std::optional<Fault> find(const std::string& word);
std::string nameOf(Fault fault);

} // namespace Faults

} // namespace Overcurrent
