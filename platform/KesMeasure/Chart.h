#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Axis.h>

#include <string>
#include <vector>

namespace KesMeasure {

/// A place in the units of the two axes. A value.
struct ChartPosition {
    double x = 0.0;
    double y = 0.0;

    bool operator==(const ChartPosition&) const = default;
};

/// A measurement in the chart. A value.
struct ChartPoint {
    enum class State {
        /// Still to be measured; stands where it is expected.
        Planned,
        Passed,
        Failed,
        /// Has no measured value; stands at the limit of its measurement.
        NotOperated
    };

    ChartPosition position;
    State state = State::Planned;
    /// The tooltip over it.
    std::string text;
};

/// An expected characteristic and its tolerance band, from left to right; may be empty. A value.
struct ChartCurve {
    /// Points of the characteristic in ascending x.
    std::vector<ChartPosition> expected;
    /// The upper and the lower end of the tolerance band, in ascending x.
    std::vector<ChartPosition> upper;
    std::vector<ChartPosition> lower;

    bool operator==(const ChartCurve&) const = default;
};

/// Everything that the chart of a test shows, on the screen and in the report: axes, the expected
/// characteristic, the points. A value. Any thread.
struct KES_EXPORT Chart : ChartCurve {
    /// The chart's name for screen readers.
    std::string title;
    /// From left to right; the title has its unit.
    Axis x;
    std::string xTitle;
    /// From bottom to top; the title has its unit.
    Axis y;
    std::string yTitle;
    /// Further characteristics, for points to which another one applies.
    std::vector<ChartCurve> others;
    std::vector<ChartPoint> points;

    /// How many points are measured, have passed and have failed, in words.
    std::string describe() const;
};

} // namespace KesMeasure
