#include <Overcurrent/data/Fault.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <iterator>
#include <numbers>

namespace Overcurrent::Faults {

namespace {

using KesDriver::Phasor;
using Phases = std::array<Phasor, 3>;

constexpr double third = 1.0 / 3.0;
/// Of the voltage of a phase with a fault to earth.
constexpr double faultVoltage = 0.5;

/// The voltages of the loops stand at 0, -120 and 120 degrees (A, B, C), and at 30, -90 and 150 (AB, BC, CA).
constexpr Phases table[] = {
    {{{1.0, 0.0}, {}, {}}},
    {{{}, {1.0, -120.0}, {}}},
    {{{}, {}, {1.0, 120.0}}},
    {{{1.0, 30.0}, {1.0, -150.0}, {}}},
    {{{}, {1.0, -90.0}, {1.0, 90.0}}},
    {{{1.0, -30.0}, {}, {1.0, 150.0}}},
    {{{1.0, 0.0}, {1.0, -120.0}, {1.0, 120.0}}},
    {{{third, 0.0}, {third, 0.0}, {third, 0.0}}},
};

constexpr const char* words[] = {"A", "B", "C", "AB", "BC", "CA", "ABC", "N"};

} // namespace

const Phases& currents(Fault fault)
{
    return table[static_cast<std::size_t>(fault)];
}

double phaseShare(Fault fault)
{
    double largest = 0.0;
    for (const auto& current : currents(fault))
        largest = std::max(largest, current.magnitude);
    return largest;
}

double residualShare(Fault fault)
{
    std::complex<double> sum;
    for (const auto& [magnitude, degrees] : currents(fault))
        sum += std::polar(magnitude, degrees * std::numbers::pi / 180.0);
    // The rest of a sum that is zero.
    constexpr double rounding = 1e-9;
    return std::abs(sum) < rounding ? 0.0 : std::abs(sum);
}

unsigned countPhases(Fault fault)
{
    const auto& all = currents(fault);
    return static_cast<unsigned>(
        std::count_if(all.begin(), all.end(), [](const Phasor& current) { return current.magnitude > 0.0; }));
}

Phases voltages(Fault fault)
{
    Phases voltages{{{1.0, 0.0}, {1.0, -120.0}, {1.0, 120.0}}};
    if (fault == Fault::N)
        voltages[0].magnitude = faultVoltage;
    else if (countPhases(fault) == 1)
        voltages[static_cast<std::size_t>(fault)].magnitude = faultVoltage;
    return voltages;
}

std::string wordOf(Fault fault)
{
    return words[static_cast<std::size_t>(fault)];
}

std::optional<Fault> find(const std::string& word)
{
    const auto found = std::find(std::begin(words), std::end(words), word);
    return found == std::end(words)
               ? std::nullopt
               : std::optional(allFaults[static_cast<std::size_t>(found - std::begin(words))]);
}

std::string nameOf(Fault fault)
{
    return lng::Overcurrent::get("Fault." + wordOf(fault));
}

} // namespace Overcurrent::Faults
