#pragma once

#include <Overcurrent/data/RelaySettings.h>

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <random>

namespace Overcurrent {

/// The relay on the simulated bench: a time-overcurrent stage whose true characteristic is a little off the
/// ideal one, as a real relay's is. Trip contact on input 1, start contact on input 2, current from the first
/// phase.
///
/// Its deviations come from a fixed seed: the same test gives the same results, always.
/// Called by the simulated device only.
class SimulatedRelay : public KesDriver::ISimulatedTestObject {
public:
    explicit SimulatedRelay(const RelaySettings& settings);

    void reset(KesDriver::DeviceTime time) override;
    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time) override;
    std::optional<KesDriver::InputEvent> getNextChange() const override;
    void acceptChange() override;

private:
    using Time = KesDriver::DeviceTime;
    using Moment = std::optional<KesDriver::DeviceTime>;

    /// A contact and the change that is on its way.
    struct Contact {
        bool isClosed = false;
        Moment changeAt;

        void move(bool closed, Time at);
    };

    void _advance(Time time);
    void _pickUp();
    void _dropOff();
    void _predictTrip();
    /// Uniform within [least, most].
    double _draw(double least, double most);
    Time _delay(double milliseconds);

    const RelaySettings _settings;
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

} // namespace Overcurrent
