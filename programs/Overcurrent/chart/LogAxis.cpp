#include <Overcurrent/chart/LogAxis.h>

#include <Overcurrent/text/ScreenNumber.h>

#include <algorithm>
#include <cmath>

namespace Overcurrent {

namespace {

constexpr double rounding = 1e-9;

/// The powers are taken from integers, so 0.001 and 1000 come out exactly.
double decade(int exponent)
{
    return exponent < 0 ? 1.0 / std::pow(10.0, -exponent) : std::pow(10.0, exponent);
}

int exponentOf(double value)
{
    return static_cast<int>(std::floor(std::log10(value) + rounding));
}

double below125(double value)
{
    const double unit = decade(exponentOf(value));
    for (const double factor : {5.0, 2.0})
        if (value >= factor * unit * (1.0 - rounding))
            return factor * unit;
    return unit;
}

double above125(double value)
{
    const double unit = decade(exponentOf(value));
    for (const double factor : {1.0, 2.0, 5.0})
        if (value <= factor * unit * (1.0 + rounding))
            return factor * unit;
    return 10.0 * unit;
}

} // namespace

LogAxis::LogAxis(double least, double most) : _minimum(1.0), _maximum(10.0)
{
    // Finite and far from the ends of what a double can hold.
    if (!(least > 1e-12) || !(most < 1e12) || !(most >= least))
        return;
    _minimum = below125(least);
    _maximum = above125(most);
    if (!(_maximum > _minimum))
        _maximum = above125(_minimum * 2.0);
}

LogAxis LogAxis::fromExactly(double least, double most)
{
    LogAxis axis(least, most);
    if (least > 0.0 && least < axis._maximum)
        axis._minimum = least;
    return axis;
}

double LogAxis::toShare(double value) const
{
    return value > 0.0 ? std::log(value / _minimum) / std::log(_maximum / _minimum) : 0.0;
}

std::vector<AxisTick> LogAxis::getTicks() const
{
    std::vector<AxisTick> ticks;
    for (int exponent = exponentOf(_minimum); exponent <= exponentOf(_maximum); ++exponent)
        for (int factor = 1; factor <= 9; ++factor) {
            const double value = factor * decade(exponent);
            if (value < _minimum * (1.0 - rounding) || value > _maximum * (1.0 + rounding))
                continue;
            const bool hasLabel = factor == 1 || factor == 2 || factor == 5;
            ticks.push_back({value, hasLabel, hasLabel ? ScreenNumber::shortest(value) : std::string()});
        }
    return ticks;
}

} // namespace Overcurrent
