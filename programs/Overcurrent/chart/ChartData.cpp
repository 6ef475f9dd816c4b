#include <Overcurrent/chart/ChartData.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/OperateCurve.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>

#include <algorithm>
#include <cmath>

namespace Overcurrent {

namespace {

constexpr int curveSamples = 120;
/// Where the curve begins: closer to Is its time has no bounds.
constexpr double firstMultiple = 1.1;
/// A lower band that reaches down to zero has no place on a logarithmic axis.
constexpr double leastShare = 0.05;

std::pair<double, double> plannedRange(const TestPlan& plan)
{
    double least = firstMultiple;
    double most = 2.0;
    for (const double multiple : plan.multiples)
        if (multiple > 1.0 && multiple <= TestPlan::maximumMultiple) {
            least = std::min(least, multiple);
            most = std::max(most, multiple);
        }
    return {least, most};
}

void sampleCurve(ChartData& chart, const RelaySettings& settings, double least, double most)
{
    for (int i = 0; i <= curveSamples; ++i) {
        const double multiple = least * std::pow(most / least, static_cast<double>(i) / curveSamples);
        const auto expected = OperateCurve::operateTime(settings, multiple);
        if (!expected)
            continue;
        const double tolerance = OperateCurve::tolerance(settings, *expected);
        chart.expected.push_back({multiple, *expected});
        chart.upper.push_back({multiple, *expected + tolerance});
        chart.lower.push_back({multiple, std::max(*expected - tolerance, *expected * leastShare)});
    }
}

void addPoints(ChartData& chart, const TestResults& results)
{
    for (const auto& point : results.points) {
        const auto evaluated = Evaluation::evaluate(results, point);
        const double seconds = evaluated.measured.value_or(results.plan.timeout);
        chart.points.push_back(
            {{point.multiple, seconds}, evaluated.isPassed, point.state == MeasureState::Measured});
    }
}

/// The band near Is would take most of the height; the axis ends a little above the first planned point.
void chooseAxes(ChartData& chart, const TestPlan& plan, const RelaySettings& settings, double most)
{
    chart.multiples = LogAxis::fromExactly(1.0, most);
    double longest = 0.0;
    for (const double multiple : plan.multiples)
        if (const auto expected = OperateCurve::operateTime(settings, multiple))
            longest = std::max(longest, *expected + OperateCurve::tolerance(settings, *expected));
    double shortest = longest;
    for (const auto& position : chart.lower)
        shortest = std::min(shortest, position.seconds);
    for (const auto& point : chart.points) {
        longest = std::max(longest, point.position.seconds);
        shortest = std::min(shortest, std::max(point.position.seconds, 1e-3));
    }
    chart.seconds = LogAxis(shortest, longest * 1.3);
}

} // namespace

ChartData ChartData::create(const RelaySettings& settings, const TestPlan& plan, const TestResults* results)
{
    ChartData chart;
    const auto [least, most] = plannedRange(plan);
    sampleCurve(chart, settings, least, most);
    if (results)
        addPoints(chart, *results);
    chooseAxes(chart, plan, settings, most);
    return chart;
}

std::string ChartData::describe() const
{
    const auto passed = static_cast<std::size_t>(
        std::count_if(points.begin(), points.end(), [](const ChartPoint& point) { return point.isPassed; }));
    return Kes::StringHelper::format(lng::Overcurrent::get("Chart.description"), points.size(), passed,
                                     points.size() - passed);
}

} // namespace Overcurrent
