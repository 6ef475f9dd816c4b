#include <KesDriver/simulated/detail/SimulatedEndWatch.h>

namespace KesDriver {

void SimulatedEndWatch::begin(const std::optional<EndCondition>& condition, const SimulatedInputs& inputs,
                              DeviceTime time)
{
    clear();
    if (!condition)
        return;
    _condition = &*condition;
    _hasReached.assign(condition->inputs.size(), false);
    if (_isFulfilled(inputs))
        _fulfilledSince = time;
}

void SimulatedEndWatch::note(unsigned input, const SimulatedInputs& inputs, DeviceTime time)
{
    if (!_condition)
        return;
    for (std::size_t i = 0; i < _hasReached.size(); ++i) {
        const auto& wanted = _condition->inputs[i];
        if (wanted.input == input && wanted.isClosed == inputs.isClosed(input))
            _hasReached[i] = true;
    }
    if (!_isFulfilled(inputs))
        _fulfilledSince.reset();
    else if (!_fulfilledSince)
        _fulfilledSince = time;
}

std::optional<DeviceTime> SimulatedEndWatch::getEnd() const
{
    if (!_fulfilledSince)
        return std::nullopt;
    return *_fulfilledSince + _condition->debounce;
}

bool SimulatedEndWatch::_isFulfilled(const SimulatedInputs& inputs) const
{
    const bool isAnyEnough = _condition->join == EndCondition::Join::Any;
    for (std::size_t i = 0; i < _hasReached.size(); ++i) {
        const auto& wanted = _condition->inputs[i];
        const bool holds =
            inputs.isClosed(wanted.input) == wanted.isClosed && (!wanted.isEdge || _hasReached[i]);
        if (holds == isAnyEnough)
            return isAnyEnough;
    }
    return !isAnyEnough;
}

} // namespace KesDriver
