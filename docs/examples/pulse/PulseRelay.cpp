#include "PulseRelay.h"

using namespace std::chrono_literals;

void PulseRelay::reset(KesDriver::DeviceTime)
{
    _isClosed = false;
    _next.reset();
}

//! [relay]
void PulseRelay::applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time)
{
    const bool closes = outputs.currents[0].magnitude >= 0.5;
    if (closes == _isClosed)
        _next.reset();
    else if (!_next)
        _next = KesDriver::InputEvent{1, closes, time + (closes ? 25ms : 10ms)};
}

void PulseRelay::acceptChange()
{
    _isClosed = _next->isClosed;
    _next.reset();
}
//! [relay]
