#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <string>
#include <vector>

namespace KesMeasure {

/// A mark on an axis.
struct AxisTick {
    /// Where it is, in the unit of the axis.
    double value = 0.0;
    /// The lower, the sooner it has a label.
    int rank = 0;
    /// Empty for a fine line only.
    std::string label;
};

/// An axis: from which value to which, where its ticks are, and where a value lies between its ends. A value.
/// Any thread.
class KES_EXPORT Axis {
public:
    /// How much of the axis a label takes, with the gap beside it.
    using Extent = std::function<double(const std::string& label)>;

    /// Linear from 0 to 1.
    Axis() = default;
    /// Logarithmic, from the 1-2-5 number at or below `least` to the one at or above `most`. Values without
    /// sense (not finite, not above zero, the wrong way round) give the axis from 1 to 10.
    static Axis logarithmic(double least, double most);
    /// As above, with a lower end that stays as given.
    static Axis logarithmicFrom(double least, double most);
    /// Linear, between multiples of a tenth of the range's power of ten that hold both values. Values without
    /// sense (not finite, the wrong way round) give the axis from 0 to 1.
    static Axis linear(double least, double most);

    double getMinimum() const { return _minimum; }
    double getMaximum() const { return _maximum; }

    /// 0 at the lower end, 1 at the upper end, less or more beyond them; 0 for what has no logarithm.
    double toShare(double value) const;

    /// In ascending order, both ends included when they are ticks, for an axis of that length. On a
    /// logarithmic axis powers of ten have labels first, then 2 and 5 times one, each where there is room; on
    /// one of less than a decade others too. On a linear axis round numbers as close as their labels allow.
    std::vector<AxisTick> getTicks(double length, const Extent& extentOf) const;

private:
    Axis(double minimum, double maximum, bool isLogarithmic)
        : _minimum(minimum), _maximum(maximum), _isLogarithmic(isLogarithmic)
    {}

    std::vector<AxisTick> _placeLogarithmic() const;
    std::vector<AxisTick> _placeLinear(double step) const;
    std::vector<AxisTick> _getLinearTicks(double length, const Extent& extentOf) const;
    bool _label(std::vector<AxisTick>& ticks, double length, const Extent& extentOf) const;

    double _minimum = 0.0;
    double _maximum = 1.0;
    bool _isLogarithmic = false;
};

} // namespace KesMeasure
