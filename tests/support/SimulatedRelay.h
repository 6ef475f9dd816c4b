#pragma once

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <optional>

namespace KesTest {

/// The simplest relay: contact 1 closes a fixed time after current IA has reached the pick-up value, and
/// opens a fixed time after it has fallen below.
class SimulatedRelay : public KesDriver::ISimulatedTestObject {
public:
    SimulatedRelay(double pickUpAmperes, KesDriver::DeviceTime operateTime, KesDriver::DeviceTime releaseTime)
        : _pickUp(pickUpAmperes), _operate(operateTime), _release(releaseTime)
    {}

    void reset(KesDriver::DeviceTime) override
    {
        _next.reset();
        _isClosed = false;
    }
    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time) override
    {
        const bool shouldClose = outputs.currents[0].magnitude >= _pickUp;
        if (shouldClose == _isClosed)
            _next.reset();
        else if (!_next)
            _next = KesDriver::InputEvent{1, shouldClose, time + (shouldClose ? _operate : _release)};
    }
    std::optional<KesDriver::InputEvent> getNextChange() const override { return _next; }
    void acceptChange() override
    {
        _isClosed = _next->isClosed;
        _next.reset();
    }

private:
    const double _pickUp;
    const KesDriver::DeviceTime _operate;
    const KesDriver::DeviceTime _release;
    bool _isClosed = false;
    std::optional<KesDriver::InputEvent> _next;
};

} // namespace KesTest
