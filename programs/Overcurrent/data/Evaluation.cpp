#include <Overcurrent/data/Evaluation.h>

#include <Overcurrent/data/StageTimes.h>
#include <Overcurrent/data/TimeBand.h>

#include <KesMeasure/Series.h>

#include <algorithm>
#include <chrono>

namespace Overcurrent::Evaluation {

namespace {

/// Values read from a ramp are sums of steps: what is a hair outside by rounding is inside.
constexpr double rounding = 1e-9;
/// The clock of a device counts whole microseconds.
constexpr double clockStep = 1e-6;

double toSeconds(KesDriver::DeviceTime time)
{
    return std::chrono::duration<double>(time).count();
}

bool isFound(const std::optional<RampResult>& ramp)
{
    return ramp && ramp->state == MeasureState::Measured && ramp->multiple > 0.0 && ramp->without > 0.0;
}

} // namespace

Point evaluate(const TestResults& results, const PointResult& point)
{
    Point evaluated;
    const auto faultCase = results.plan.caseOf(point.fault);
    evaluated.current = point.multiple * StageTimes::referenceCurrent(results.settings, faultCase);
    if (const auto band = TimeBand::at(results.settings, faultCase, point.multiple)) {
        evaluated.stage = band->stage;
        evaluated.expected = band->expected;
        evaluated.earliest = band->earliest;
        evaluated.latest = band->latest.value_or(results.plan.timeout);
    }
    if (point.state != MeasureState::Measured)
        return evaluated;
    evaluated.measured = toSeconds(point.time);
    evaluated.deviation = *evaluated.measured - evaluated.expected;
    if (evaluated.expected > 0.0)
        evaluated.deviationPercent = *evaluated.deviation / evaluated.expected * 100.0;
    std::vector<double> singles;
    for (const auto time : point.singles)
        singles.push_back(toSeconds(time));
    if (!singles.empty())
        evaluated.spread = KesMeasure::Series::getSpread(singles);
    singles.push_back(*evaluated.measured);
    evaluated.isPassed = std::all_of(singles.begin(), singles.end(), [&](double time) {
        return time >= evaluated.earliest - clockStep && time <= evaluated.latest + clockStep;
    });
    return evaluated;
}

bool isPickUpPassed(const TestResults& results)
{
    const double tolerance = results.plan.pickUpTolerancePercent / 100.0 + rounding;
    return isFound(results.pickUp) && results.pickUp->multiple >= 1.0 - tolerance &&
           results.pickUp->without <= 1.0 + tolerance;
}

std::optional<double> ratio(const TestResults& results)
{
    if (!isFound(results.pickUp) || !isFound(results.dropOff))
        return std::nullopt;
    return results.dropOff->getValue() / results.pickUp->getValue();
}

std::optional<std::pair<double, double>> ratioInterval(const TestResults& results)
{
    if (!ratio(results))
        return std::nullopt;
    return std::pair(results.dropOff->multiple / results.pickUp->multiple,
                     results.dropOff->without / results.pickUp->without);
}

bool isDropOffPassed(const TestResults& results)
{
    const auto interval = ratioInterval(results);
    return interval && interval->second >= results.plan.minimumRatio - rounding && interval->first < 1.0;
}

std::size_t countPassed(const TestResults& results)
{
    return static_cast<std::size_t>(
        std::count_if(results.points.begin(), results.points.end(),
                      [&](const PointResult& point) { return evaluate(results, point).isPassed; }));
}

KesMeasure::Verdict verdict(const TestResults& results)
{
    const bool areRampsPassed =
        !results.settings.hasRamps() || (isPickUpPassed(results) && isDropOffPassed(results));
    return results.judge(isWhole(results) && countPassed(results) == results.points.size() && areRampsPassed);
}

} // namespace Overcurrent::Evaluation
