#include <KesDevice/detail/EventFilter.h>

#include <KesDevice/detail/KestoPlausibility.h>

#include <algorithm>
#include <utility>
#include <variant>

namespace KesDevice {

using namespace KesDriver;

void EventFilter::expectSteps(std::size_t count)
{
    _expected = std::max(count, _expected.value_or(0));
}

bool EventFilter::accept(const Report& event, const OutputLimits& limits)
{
    if (const auto* input = std::get_if<InputEvent>(&event))
        return _accept(*input, limits);
    if (const auto* step = std::get_if<StepEvent>(&event))
        return _accept(*step);
    const auto* end = std::get_if<SequenceEvent>(&event);
    return end && _accept(*end);
}

bool EventFilter::_accept(const InputEvent& event, const OutputLimits& limits)
{
    const bool isStepKnown = !event.step || *event.step < std::max(_steps, _expected.value_or(0));
    return _acceptTime(event.time) && event.input >= 1 && event.input <= limits.binaryInputs && isStepKnown;
}

bool EventFilter::_accept(const StepEvent& event)
{
    if (event.step == 0 && _expected)
        _steps = std::max(*std::exchange(_expected, std::nullopt), _isRunning ? _steps : 0);
    _isRunning = true;
    return _acceptTime(event.time) && event.step < std::max(_steps, _expected.value_or(0));
}

bool EventFilter::_accept(const SequenceEvent& event)
{
    if (!_acceptTime(event.time))
        return false;
    _isRunning = false;
    return true;
}

bool EventFilter::_acceptTime(DeviceTime time)
{
    if (time < _last || !KestoPlausibility::isPlausible(time))
        return false;
    _last = time;
    return true;
}

} // namespace KesDevice
