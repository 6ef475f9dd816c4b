#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>
#include <KesDriver/simulated/relays/RelayContact.h>

#include <array>
#include <cstddef>
#include <optional>
#include <random>
#include <utility>
#include <vector>

namespace KesDriver {

/// A relay for the simulated bench: overcurrent stages whose true characteristic is a little off the ideal
/// one, as a real relay's is. The phase stages see the largest current of the three phases, the residual one
/// the sum of the phases. Start and trip contact are common to all stages.
///
/// Directional phase stages compare the current of each phase with the voltage between the two others, turned
/// onto that of the phase; the residual one compares the sum of the currents with that of the voltages,
/// reversed. Without a voltage they do not operate.
///
/// Its deviations come from a fixed seed: the same test gives the same results, always.
/// Called by the simulated device only, on its thread.
class KES_EXPORT OvercurrentRelay : public ISimulatedTestObject {
public:
    /// Those of IEC 60255-151 with the long-time inverse of BS 142 beside them, and those of IEEE C37.112.
    enum class Curve {
        StandardInverse,
        VeryInverse,
        ExtremelyInverse,
        LongTimeInverse,
        DefiniteTime,
        IeeeModeratelyInverse,
        IeeeVeryInverse,
        IeeeExtremelyInverse,
        Table
    };

    /// In which direction the fault has to lie.
    enum class Direction { None, Forward, Reverse };

    /// What the outputs feed: each its phase, with the residual input in the common return; or all of them
    /// together that one phase, or the residual input alone.
    enum class Connection { Phases, PhaseA, PhaseB, PhaseC, Residual };

    /// One overcurrent stage. A value.
    struct Stage {
        bool isUsed = false;
        /// In amperes, above zero.
        double settingCurrent = 1.0;
        /// TMS, above zero; plays no part for the definite time and the table.
        double timeMultiplier = 1.0;
        Curve curve = Curve::StandardInverse;
        /// In seconds.
        double definiteTime = 1.0;
        /// Multiples of the setting, rising, and seconds. Between two of them times lie on a straight line of
        /// logarithmic axes; below the first one the stage does not operate.
        std::vector<std::pair<double, double>> table{};
        Direction direction = Direction::None;
    };

    /// The last stage is the residual one.
    static constexpr std::size_t stageCount = 4;
    static constexpr std::size_t residualStage = 3;

    /// How the relay is set and wired. A value.
    struct Settings {
        std::array<Stage, stageCount> stages{Stage{true}};
        /// Of the current against the voltage, in degrees; for all directional stages.
        double characteristicAngle = -45.0;
        Connection connection = Connection::Phases;
        /// The inputs that the contacts are wired to.
        unsigned tripInput = 1;
        unsigned startInput = 2;
    };

    explicit OvercurrentRelay(const Settings& settings);

    void reset(DeviceTime time) override;
    void applyOutputs(const OutputState& outputs, DeviceTime time) override;
    std::optional<InputEvent> getNextChange() const override;
    void acceptChange() override;

private:
    using Time = DeviceTime;

    /// What has become of a stage.
    struct Element {
        /// The current as a multiple of the true setting.
        double multiple = 0.0;
        bool isPickedUp = false;
        /// The share of the operate time that is over.
        double travelled = 0.0;
    };

    bool _isPickedUp() const;
    void _advance(Time time);
    void _measure(const OutputState& outputs);
    void _predictTrip();
    /// Uniform within [least, most].
    double _draw(double least, double most);
    Time _delay(double milliseconds);

    const Settings _settings;
    std::mt19937 _random;
    double _currentError = 0.0;
    double _timeError = 0.0;

    Time _time{0};
    std::array<Element, stageCount> _elements{};
    Time _tripDelay{0};
    RelayContact _start;
    RelayContact _trip;
};

} // namespace KesDriver
