#include <KesMeasure/RunClock.h>

#include <algorithm>
#include <chrono>
#include <numeric>

namespace KesMeasure {

namespace {

/// A step that takes longer than expected stands still a little before its end.
constexpr double mostOfStep = 0.98;

} // namespace

RunClock::RunClock(std::vector<double> steps) : _steps(std::move(steps)) {}

void RunClock::beginStep()
{
    _number = std::min(_number + 1, _steps.size());
    _stepBegin = _now;
}

void RunClock::extendStep(double seconds)
{
    if (_number > 0)
        _steps[_number - 1] += seconds;
}

void RunClock::setTime(KesDriver::DeviceTime now)
{
    if (!_begin) {
        _begin = now;
        _stepBegin = now;
    }
    // A device that talks nonsense does not take the progress back.
    _now = _begin == now ? now : std::max(_now, now);
}

RunTimes RunClock::getTimes()
{
    const auto present = _steps.begin() + static_cast<std::ptrdiff_t>(_number);
    const double whole = std::accumulate(_steps.begin(), _steps.end(), 0.0);
    const double rest = std::accumulate(present, _steps.end(), 0.0);
    const double expected = _number > 0 ? _steps[_number - 1] : 0.0;
    const double left = std::max(expected - KesDriver::toSeconds(_now - _stepBegin), 0.0);
    const double shown = std::max(left, expected * (1.0 - mostOfStep));
    RunTimes times;
    times.elapsed = _begin ? KesDriver::toSeconds(_now - *_begin) : 0.0;
    times.remaining = rest + left;
    if (whole > 0.0 && _number > 0)
        _share = std::clamp((whole - rest - shown) / whole, _share, 1.0);
    times.share = _share;
    return times;
}

} // namespace KesMeasure
