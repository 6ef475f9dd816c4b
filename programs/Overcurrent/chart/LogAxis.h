#pragma once

#include <string>
#include <vector>

namespace Overcurrent {

/// A mark on an axis.
struct AxisTick {
    double value = 0.0;
    /// 1, 2 and 5 times a power of ten have a label; the others only a fine line.
    bool hasLabel = false;
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

    /// In ascending order, both ends included when they are ticks.
    std::vector<AxisTick> getTicks() const;

private:
    double _minimum;
    double _maximum;
};

} // namespace Overcurrent
