#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>
#include <KesDriver/simulated/relays/RelayContact.h>

#include <array>
#include <cstddef>
#include <optional>
#include <random>

namespace KesDriver {

/// A relay for the simulated bench: a stage each for undervoltage (27), overvoltage (59), underfrequency and
/// overfrequency (81) and rate of change of frequency (81R), whose true values are a little off their
/// settings, as a real relay's are. All stages share a trip and a start contact.
///
/// It measures the three phase-to-phase voltages: the lowest for undervoltage, the highest for overvoltage.
/// Without voltage (below a fifth of the nominal one) it measures no frequency; a jump of the frequency is no
/// rate of change.
///
/// Its deviations come from a fixed seed: the same test gives the same results, always.
/// Called by the simulated device only, on its thread.
class KES_EXPORT VoltageFrequencyRelay : public ISimulatedTestObject {
public:
    /// Which stage, as an index into `Settings::stages`.
    enum Kind : std::size_t {
        Undervoltage,
        Overvoltage,
        Underfrequency,
        Overfrequency,
        FrequencyRate,
        Count
    };

    /// One stage. A value.
    struct Stage {
        bool isUsed = true;
        /// In volts (phase to phase), hertz or hertz per second; a rate below zero is a falling frequency.
        double setting = 0.0;
        /// In seconds, from 0. Measuring takes time, too: a stage operates no sooner than 25 ms (voltage),
        /// 60 ms (frequency) or 80 ms (rate) after its quantity, however short its delay is.
        double delay = 0.0;
        /// Voltages and rate: the drop-off value as a share of the setting. Frequencies: how far behind the
        /// setting it lies, in hertz.
        double dropOff = 0.0;
    };

    /// How the relay is set and wired. A value.
    struct Settings {
        /// In volts, phase to phase.
        double nominalVoltage = 100.0;
        std::array<Stage, Count> stages{Stage{true, 80.0, 1.0, 1.05}, Stage{true, 115.0, 0.5, 0.95},
                                        Stage{true, 49.0, 0.5, 0.05}, Stage{true, 51.0, 0.5, 0.05},
                                        Stage{true, -1.0, 0.3, 0.9}};
        /// The inputs that the contacts are wired to.
        unsigned tripInput = 1;
        unsigned startInput = 2;
    };

    /// At rest at time 0. The settings are taken as they are; who has them from a user makes the relay with
    /// `RelayCatalog`, which refuses wrong ones.
    explicit VoltageFrequencyRelay(const Settings& settings);

    void reset(DeviceTime time) override;
    void applyOutputs(const OutputState& outputs, DeviceTime time) override;
    std::optional<InputEvent> getNextChange() const override;
    void acceptChange() override;

private:
    using Time = DeviceTime;

    struct Element {
        bool isBeyond = false;
        /// Since when it is.
        Time since{0};
        RelayContact start;
        RelayContact trip;
    };
    using Elements = std::array<Element, Count>;

    /// What the relay sees.
    struct Quantities {
        double lowestVolts = 0.0;
        double highestVolts = 0.0;
        /// Without voltage there is none.
        std::optional<double> hertz;
        double hertzPerSecond = 0.0;
    };

    Quantities _measure(const OutputState& outputs, Time time) const;
    bool _isBeyond(Kind kind, const Quantities& quantities, bool wasBeyond) const;
    void _follow(Kind kind, bool isBeyond, Time time);
    void _followRate(Element& element, bool isBeyond, Time time);
    RelayContact* _findNext(Elements& elements) const;
    unsigned _inputOf(const Elements& elements, const RelayContact& contact) const;
    bool _isClosed(const Elements& elements, unsigned input) const;
    /// Plays the contacts until an input changes, or to the time; the input's change.
    std::optional<InputEvent> _play(Elements& elements, Time until) const;
    void _applyNext(Elements& elements, RelayContact& contact) const;
    Time _operateTime(Kind kind) const;
    /// Uniform within [least, most].
    double _draw(double least, double most);

    const Settings _settings;
    std::mt19937 _random;
    double _voltageError = 0.0;
    double _hertzError = 0.0;
    double _rateError = 0.0;
    double _timeError = 0.0;
    Time _closeTime{0};
    Time _openTime{0};

    Time _time{0};
    std::optional<double> _hertz;
    double _hertzPerSecond = 0.0;
    Elements _elements;
};

} // namespace KesDriver
