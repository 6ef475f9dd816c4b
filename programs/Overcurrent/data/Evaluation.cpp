#include <Overcurrent/data/Evaluation.h>

#include <Overcurrent/data/OperateCurve.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace Overcurrent::Evaluation {

using KesMeasure::Verdict;

namespace {

/// Values read from a ramp are sums of steps: what is a hair outside by rounding is inside.
constexpr double rounding = 1e-9;

bool isComplete(const TestResults& results)
{
    return results.points.size() == results.plan.multiples.size() && results.pickUp && results.dropOff;
}

} // namespace

Point evaluate(const TestResults& results, const PointResult& point)
{
    Point evaluated;
    evaluated.current = point.multiple * results.settings.settingCurrent;
    evaluated.expected = OperateCurve::operateTime(results.settings, point.multiple).value_or(0.0);
    evaluated.tolerance = OperateCurve::tolerance(results.settings, evaluated.expected);
    if (point.state != MeasureState::Measured)
        return evaluated;
    evaluated.measured = std::chrono::duration<double>(point.time).count();
    evaluated.deviation = *evaluated.measured - evaluated.expected;
    if (evaluated.expected > 0.0)
        evaluated.deviationPercent = *evaluated.deviation / evaluated.expected * 100.0;
    evaluated.isPassed = std::fabs(*evaluated.deviation) <= evaluated.tolerance + rounding;
    return evaluated;
}

bool isPickUpPassed(const TestResults& results)
{
    return results.pickUp && results.pickUp->state == MeasureState::Measured &&
           std::fabs(results.pickUp->multiple - 1.0) <=
               results.plan.pickUpTolerancePercent / 100.0 + rounding;
}

std::optional<double> ratio(const TestResults& results)
{
    const auto isFound = [](const auto& ramp) {
        return ramp && ramp->state == MeasureState::Measured && ramp->multiple > 0.0;
    };
    if (!isFound(results.pickUp) || !isFound(results.dropOff))
        return std::nullopt;
    return results.dropOff->multiple / results.pickUp->multiple;
}

bool isDropOffPassed(const TestResults& results)
{
    const auto value = ratio(results);
    return value && *value >= results.plan.minimumRatio - rounding && *value < 1.0;
}

std::size_t countPassed(const TestResults& results)
{
    return static_cast<std::size_t>(
        std::count_if(results.points.begin(), results.points.end(),
                      [&](const PointResult& point) { return evaluate(results, point).isPassed; }));
}

Verdict verdict(const TestResults& results)
{
    switch (results.end) {
    case RunEnd::Running:
        return Verdict::None;
    case RunEnd::Stopped:
        return Verdict::Stopped;
    case RunEnd::Fault:
        return Verdict::Fault;
    case RunEnd::Ended:
        return Verdict::Failed;
    case RunEnd::Complete:
        break;
    }
    const bool isPassed = isComplete(results) && countPassed(results) == results.points.size() &&
                          isPickUpPassed(results) && isDropOffPassed(results);
    return isPassed ? Verdict::Passed : Verdict::Failed;
}

} // namespace Overcurrent::Evaluation
