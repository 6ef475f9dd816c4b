#include <KesDriver/simulated/detail/SimulatedWave.h>

#include <cmath>

namespace KesDriver {

namespace {

double fraction(double value)
{
    return value - std::floor(value);
}

} // namespace

void SimulatedWave::run(DeviceTime time, double hertz, double hertzPerSecond)
{
    _periods = fraction(_getPeriods(time));
    _since = time;
    _hertz = hertz;
    _hertzPerSecond = hertzPerSecond;
}

void SimulatedWave::restart(DeviceTime time)
{
    *this = {};
    _since = time;
}

DeviceTime SimulatedWave::find(DeviceTime time, double degrees) const
{
    const double hertz = _getHertz(time);
    if (!(hertz > 0.0))
        return time;
    const double period = 1e6 / hertz;
    const double wait = fraction(degrees / 360.0 - _getPeriods(time)) * period;
    // The angle that has passed a rounding ago is the angle now, not one period later.
    return time + DeviceTime(wait > period - 0.5 ? 0 : std::llround(wait));
}

double SimulatedWave::_getPeriods(DeviceTime time) const
{
    const double seconds = toSeconds(time - _since);
    return _periods + (_hertz + _hertzPerSecond * seconds / 2.0) * seconds;
}

double SimulatedWave::_getHertz(DeviceTime time) const
{
    return _hertz + _hertzPerSecond * toSeconds(time - _since);
}

} // namespace KesDriver
