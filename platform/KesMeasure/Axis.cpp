#include <KesMeasure/Axis.h>

#include <KesMeasure/ScreenNumber.h>

#include <algorithm>
#include <cmath>

namespace KesMeasure {

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

Axis Axis::logarithmic(double least, double most)
{
    // Finite and far from the ends of what a double can hold.
    if (!(least > 1e-12) || !(most < 1e12) || !(most >= least))
        return {1.0, 10.0, true};
    const double minimum = below125(least);
    const double maximum = above125(most);
    return {minimum, maximum > minimum ? maximum : above125(minimum * 2.0), true};
}

Axis Axis::logarithmicFrom(double least, double most)
{
    auto axis = logarithmic(least, most);
    if (least > 0.0 && least < axis._maximum)
        axis._minimum = least;
    return axis;
}

Axis Axis::linear(double least, double most)
{
    if (!(least > -1e12) || !(most < 1e12) || !(most >= least))
        return {};
    const double range = most > least ? most - least : std::max(std::fabs(most), 1.0);
    const double unit = decade(exponentOf(range)) / 10.0;
    const double minimum = std::floor(least / unit + rounding) * unit;
    const double maximum = std::ceil(most / unit - rounding) * unit;
    return {minimum, maximum > minimum ? maximum : minimum + unit, false};
}

double Axis::toShare(double value) const
{
    if (!_isLogarithmic)
        return (value - _minimum) / (_maximum - _minimum);
    return value > 0.0 ? std::log(value / _minimum) / std::log(_maximum / _minimum) : 0.0;
}

std::vector<AxisTick> Axis::_placeLogarithmic() const
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

std::vector<AxisTick> Axis::_placeLinear(double step) const
{
    const double slack = (_maximum - _minimum) * rounding;
    std::vector<AxisTick> ticks;
    // Counted, so that the values come out as exact multiples.
    for (auto i = std::ceil((_minimum - slack) / step); i * step <= _maximum + slack; ++i)
        ticks.push_back({i == 0.0 ? 0.0 : i * step, 0, {}});
    return ticks;
}

/// Labels by rank where there is room; false when one did not fit.
bool Axis::_label(std::vector<AxisTick>& ticks, double length, const Extent& extentOf) const
{
    bool isComplete = true;
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
            isComplete = isComplete && isFree;
            if (!isFree)
                continue;
            taken.emplace_back(middle - half, middle + half);
            tick.label = label;
        }
    return isComplete;
}

/// From coarse to fine, as long as every tick has room for its label.
std::vector<AxisTick> Axis::_getLinearTicks(double length, const Extent& extentOf) const
{
    constexpr int finestDecades = 2;
    const int exponent = exponentOf(_maximum - _minimum);
    std::vector<AxisTick> best;
    for (int down = 0; down <= finestDecades; ++down)
        for (const double factor : {5.0, 2.0, 1.0}) {
            auto ticks = _placeLinear(factor * decade(exponent - down));
            const bool isComplete = _label(ticks, length, extentOf);
            if (!isComplete && !best.empty())
                return best;
            if (isComplete && ticks.size() > 1)
                best = std::move(ticks);
        }
    return best;
}

std::vector<AxisTick> Axis::getTicks(double length, const Extent& extentOf) const
{
    if (!_isLogarithmic)
        return _getLinearTicks(length, extentOf);
    auto ticks = _placeLogarithmic();
    (void)_label(ticks, length, extentOf);
    return ticks;
}

} // namespace KesMeasure
