#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <optional>
#include <random>

namespace KesDriver {

/// A relay for the simulated bench: a time-overcurrent stage whose true characteristic is a
/// little off the ideal one, as a real relay's is. Its current is that of the first phase.
///
/// Its deviations come from a fixed seed: the same test gives the same results, always.
/// Called by the simulated device only.
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
        IeeeExtremelyInverse
    };

    struct Settings {
        /// In amperes, above zero.
        double settingCurrent = 1.0;
        /// TMS, above zero; plays no part for the definite time.
        double timeMultiplier = 1.0;
        Curve curve = Curve::StandardInverse;
        /// In seconds.
        double definiteTime = 1.0;
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
    using Moment = std::optional<DeviceTime>;

    /// A contact and the change that is on its way.
    struct Contact {
        bool isClosed = false;
        Moment changeAt;

        void move(bool closed, Time at);
    };

    /// The time in seconds in which the stage operates at this multiple of its setting; none when it does
    /// not.
    std::optional<double> _getOperateTime(double multiple) const;
    void _advance(Time time);
    void _pickUp();
    void _dropOff();
    void _predictTrip();
    /// Uniform within [least, most].
    double _draw(double least, double most);
    Time _delay(double milliseconds);

    const Settings _settings;
    std::mt19937 _random;
    double _currentError = 0.0;
    double _timeError = 0.0;

    Time _time{0};
    /// The current as a multiple of the true setting.
    double _multiple = 0.0;
    bool _isPickedUp = false;
    /// The share of the operate time that is over.
    double _travelled = 0.0;
    Time _tripDelay{0};
    Contact _start;
    Contact _trip;
};

} // namespace KesDriver
