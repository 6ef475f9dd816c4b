#pragma once

#include <KesDriver/Outputs.h>
#include <KesDriver/simulated/detail/SimulatedInputs.h>

#include <optional>
#include <vector>

namespace KesDriver {

/// Watches during a step for the condition that ends it early. Not synchronised.
class SimulatedEndWatch {
public:
    /// A step begins. The condition, if there is one, has to live until the next step or `clear`.
    void begin(const std::optional<EndCondition>& condition, const SimulatedInputs& inputs, DeviceTime time);
    void clear() { *this = {}; }
    /// An input has changed.
    void note(unsigned input, const SimulatedInputs& inputs, DeviceTime time);

    /// When the condition ends the step if no input changes until then.
    std::optional<DeviceTime> getEnd() const;

private:
    bool _isFulfilled(const SimulatedInputs& inputs) const;

    const EndCondition* _condition = nullptr;
    /// By condition: the input has reached the state within the step.
    std::vector<bool> _hasReached;
    std::optional<DeviceTime> _fulfilledSince;
};

} // namespace KesDriver
