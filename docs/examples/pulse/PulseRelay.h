#pragma once

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <optional>

/// The relay on the simulated bench: contact 1 closes 25 ms after current IA has reached 0.5 A, and opens 10
/// ms after it has fallen below. The simulated device calls it, one call at a time.
class PulseRelay : public KesDriver::ISimulatedTestObject {
public:
    void reset(KesDriver::DeviceTime time) override;
    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time) override;
    std::optional<KesDriver::InputEvent> getNextChange() const override { return _next; }
    void acceptChange() override;

private:
    bool _isClosed = false;
    std::optional<KesDriver::InputEvent> _next;
};
