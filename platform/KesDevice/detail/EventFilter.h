#pragma once

#include <KesDriver/Report.h>

#include <cstddef>
#include <optional>

namespace KesDevice {

/// Decides whether the events of one connection can be believed: inputs and steps exist, times do not go
/// back. Not synchronised.
class EventFilter {
public:
    /// A sequence is about to be sent. Until its first step is reported, steps of the one before are
    /// believed as well: their reports may still be on their way, and the device may refuse the new one.
    void expectSteps(std::size_t count);

    bool accept(const KesDriver::Report& event, const KesDriver::OutputLimits& limits);

    /// Of the latest event.
    KesDriver::DeviceTime getLastTime() const { return _last; }

private:
    bool _accept(const KesDriver::InputEvent& event, const KesDriver::OutputLimits& limits);
    bool _accept(const KesDriver::StepEvent& event);
    bool _accept(const KesDriver::SequenceEvent& event);
    bool _acceptTime(KesDriver::DeviceTime time);

    KesDriver::DeviceTime _last{0};
    std::size_t _steps = 0;
    std::optional<std::size_t> _expected;
    bool _isRunning = false;
};

} // namespace KesDevice
