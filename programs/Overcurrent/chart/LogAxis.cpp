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

/// Ticks of an axis of less than a decade, in tenths: the higher, the closer they lie.
int fineStep(int tenths)
{
    return tenths < 20 ? 1 : tenths < 50 ? 5 : 10;
}

int rankOf(int tenths)
{
    if (tenths == 10)
        return 0;
    if (tenths == 20 || tenths == 50)
        return 1;
    return tenths % 10 == 0 || tenths == 15 ? 2 : 3;
}

constexpr int unlabelled = 4;

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

std::vector<AxisTick> LogAxis::_placeTicks() const
{
    const bool isShort = _maximum < _minimum * 10.0 * (1.0 - rounding);
    std::vector<AxisTick> ticks;
    for (int exponent = exponentOf(_minimum); exponent <= exponentOf(_maximum); ++exponent)
        // In tenths of the power of ten, so that the values come out exactly.
        for (int tenths = 10; tenths < 100; tenths += isShort ? fineStep(tenths) : 10) {
            const double value = tenths * decade(exponent) / 10.0;
            if (value < _minimum * (1.0 - rounding) || value > _maximum * (1.0 + rounding))
                continue;
            const int rank = rankOf(tenths);
            ticks.push_back({value, isShort || rank < 2 ? rank : unlabelled, {}});
        }
    return ticks;
}

std::vector<AxisTick> LogAxis::getTicks(double length, const Extent& extentOf) const
{
    auto ticks = _placeTicks();
    std::vector<std::pair<double, double>> taken;
    for (int rank = 0; rank < unlabelled; ++rank)
        for (auto& tick : ticks) {
            if (tick.rank != rank)
                continue;
            const std::string label = ScreenNumber::shortest(tick.value);
            const double middle = toShare(tick.value) * length;
            const double half = extentOf(label) / 2.0;
            const bool isFree = std::none_of(taken.begin(), taken.end(), [&](const auto& other) {
                return middle - half < other.second && middle + half > other.first;
            });
            if (!isFree)
                continue;
            taken.emplace_back(middle - half, middle + half);
            tick.label = label;
        }
    return ticks;
}

} // namespace Overcurrent
