#pragma once

#include <KesTree/Node.h>

#include <array>
#include <cstddef>
#include <memory>

namespace VoltageFrequency {

/// The stages of the relay, in the order of the test.
enum StageKind : std::size_t {
    Undervoltage,
    Overvoltage,
    Underfrequency,
    Overfrequency,
    FrequencyRate,
    StageCount
};

/// A stage as the test object holds it. Values in volts (phase to phase), hertz or hertz per second, times in
/// seconds.
struct Stage {
    bool isUsed = false;
    /// A falling frequency has a rate below zero.
    double setting = 0.0;
    double delay = 0.0;
    /// Where it drops off, calculated from ratio or difference.
    double dropOff = 0.0;
    /// How far a value may lie from the expected one.
    double tolerance = 0.0;
    double timeTolerance = 0.0;

    bool operator==(const Stage&) const = default;
};

/// The test object's values at one moment.
struct Settings {
    double nominalVoltage = 0.0;
    double nominalFrequency = 0.0;
    /// The inputs of the device that see the relay's contacts, from 1.
    unsigned tripInput = 0;
    unsigned startInput = 0;
    std::array<Stage, StageCount> stages{};

    /// Nominal quantities before each measurement; then the contacts are waited for at most the reset time.
    double healthyTime = 0.0;
    double resetTime = 0.0;
    /// In which a ramp goes the way of one tolerance.
    double rampTime = 0.0;
    /// How far beyond the setting operate times are measured: as shares of the setting, and in hertz.
    double voltageStep = 0.0;
    double frequencyStep = 0.0;
    double rateStep = 0.0;
    /// How many times each value is measured.
    unsigned repetitions = 1;

    /// GUI thread.
    static Settings fromNode(const KesTree::Node& testObject);

    bool operator==(const Settings&) const = default;
};

/// The tree of the test object: the relay of `KesTree::VoltageFrequencyNodes` and a group "plan" for the test
/// itself.
std::unique_ptr<KesTree::Node> makeTestObject();

inline bool isVoltage(StageKind kind)
{
    return kind == Undervoltage || kind == Overvoltage;
}

/// Which way the quantity goes when the stage picks up: -1 for falling, 1 for rising.
double directionOf(const Settings& settings, StageKind kind);

} // namespace VoltageFrequency
