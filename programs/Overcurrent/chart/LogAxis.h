#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Overcurrent {

/// A mark on an axis.
struct AxisTick {
    double value = 0.0;
    /// 0 for a power of ten; the lower, the sooner it has a label.
    int rank = 0;
    /// Empty for a fine line only.
    std::string label;
};

/// A logarithmic axis: from which value to which, where its ticks are, and where a value lies between its
/// ends. A value. Any thread.
class LogAxis {
public:
    /// From the 1-2-5 number at or below `least` to the one at or above `most`. Values without sense (not
    /// finite, not above zero, the wrong way round) give the axis from 1 to 10.
    LogAxis(double least, double most);
    /// As above, with a lower end that stays as given.
    static LogAxis fromExactly(double least, double most);

    double getMinimum() const { return _minimum; }
    double getMaximum() const { return _maximum; }

    /// 0 at the lower end, 1 at the upper end, less or more beyond them; 0 for what has no logarithm.
    double toShare(double value) const;

    /// How much of the axis a label takes, with the gap beside it.
    using Extent = std::function<double(const std::string& label)>;

    /// In ascending order, both ends included when they are ticks, for an axis of that length. Powers of ten
    /// have labels first, then 2 and 5 times one, each where there is room; on an axis of less than a decade
    /// others too.
    std::vector<AxisTick> getTicks(double length, const Extent& extentOf) const;

private:
    std::vector<AxisTick> _placeTicks() const;

    double _minimum;
    double _maximum;
};

} // namespace Overcurrent
