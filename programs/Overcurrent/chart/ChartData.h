#pragma once

#include <Overcurrent/chart/LogAxis.h>
#include <Overcurrent/data/TestPlan.h>
#include <Overcurrent/data/TestResults.h>

#include <optional>
#include <string>
#include <vector>

namespace Overcurrent {

struct ChartPosition {
    double multiple = 0.0;
    double seconds = 0.0;
};

/// A measured point. One without a measured time stands at the time-out.
struct ChartPoint {
    ChartPosition position;
    bool isPassed = false;
    bool isMeasured = true;
};

/// Everything that the chart of a test shows, on the screen and in the report: axes, the expected
/// characteristic with its tolerance band, the measured points. A value. Any thread.
struct ChartData {
    LogAxis multiples{1.0, 20.0};
    LogAxis seconds{0.1, 10.0};
    /// From left to right.
    std::vector<ChartPosition> expected;
    std::vector<ChartPosition> upper;
    std::vector<ChartPosition> lower;
    std::vector<ChartPoint> points;

    /// `results` may be null: no test yet. With results, `settings` and `plan` are theirs.
    static ChartData create(const RelaySettings& settings, const TestPlan& plan, const TestResults* results);

    /// For those who cannot see the chart.
    std::string describe() const;
};

} // namespace Overcurrent
