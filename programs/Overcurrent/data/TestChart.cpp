#include <Overcurrent/data/TestChart.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/ResultTexts.h>
#include <Overcurrent/data/TestSequences.h>
#include <Overcurrent/data/TimeBand.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <algorithm>
#include <cmath>

namespace Overcurrent::TestChart {

namespace {

using KesMeasure::Axis;
using KesMeasure::Chart;
using KesMeasure::ChartCurve;
using KesMeasure::ChartPoint;

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

ChartCurve sampleCurve(const RelaySettings& settings, const FaultCase& faultCase, double least, double most)
{
    ChartCurve curve;
    for (int i = 0; i <= curveSamples; ++i) {
        const double multiple = least * std::pow(most / least, static_cast<double>(i) / curveSamples);
        const auto band = TimeBand::at(settings, faultCase, multiple);
        if (!band || !band->latest)
            continue;
        curve.expected.push_back({multiple, band->expected});
        curve.upper.push_back({multiple, *band->latest});
        curve.lower.push_back({multiple, std::max(band->earliest, band->expected * leastShare)});
    }
    return curve;
}

/// Each curve once: most faults have the same.
void addCurves(Chart& chart, const RelaySettings& settings, const TestPlan& plan, double least, double most)
{
    static_cast<ChartCurve&>(chart) = sampleCurve(settings, plan.getRampCase(), least, most);
    for (const auto fault : plan.faults) {
        const auto curve = sampleCurve(settings, plan.caseOf(fault), least, most);
        if (curve != chart &&
            std::find(chart.others.begin(), chart.others.end(), curve) == chart.others.end())
            chart.others.push_back(curve);
    }
}

ChartPoint::State stateOf(const PointResult& point, bool isPassed)
{
    if (point.state != MeasureState::Measured)
        return ChartPoint::State::NotOperated;
    return isPassed ? ChartPoint::State::Passed : ChartPoint::State::Failed;
}

void addPoints(Chart& chart, const TestResults& results)
{
    for (const auto& point : results.points) {
        const auto evaluated = Evaluation::evaluate(results, point);
        const double limit = TestSequences::pointLimit(results.settings, results.plan, point);
        chart.points.push_back({{point.multiple, evaluated.measured.value_or(limit)},
                                stateOf(point, evaluated.isPassed),
                                ResultTexts::describe(results, point)});
    }
}

void addPlanned(Chart& chart, const TestResults& results)
{
    const auto points = results.plan.getPoints();
    for (std::size_t i = results.points.size(); i < points.size(); ++i) {
        const PointResult point{points[i]};
        const double expected = Evaluation::evaluate(results, point).expected;
        if (expected > 0.0)
            chart.points.push_back({{point.multiple, expected},
                                    ChartPoint::State::Planned,
                                    ResultTexts::describePlanned(results, point)});
    }
}

/// The band near Is would take most of the height; the axis ends a little above the first planned point.
void chooseAxes(Chart& chart, const TestPlan& plan, const RelaySettings& settings, double most)
{
    chart.x = Axis::logarithmicFrom(1.0, most);
    double longest = 0.0;
    for (const auto& point : plan.getPoints())
        if (const auto band = TimeBand::at(settings, plan.caseOf(point.fault), point.multiple))
            longest = std::max(longest, band->latest.value_or(band->expected));
    double shortest = longest;
    const auto fit = [&](const ChartCurve& curve) {
        for (const auto& position : curve.lower)
            shortest = std::min(shortest, position.y);
    };
    fit(chart);
    for (const auto& curve : chart.others)
        fit(curve);
    for (const auto& point : chart.points) {
        longest = std::max(longest, point.position.y);
        shortest = std::min(shortest, std::max(point.position.y, 1e-3));
    }
    chart.y = Axis::logarithmic(shortest, longest * 1.3);
}

} // namespace

Chart create(const RelaySettings& settings, const TestPlan& plan, const TestResults* results)
{
    using lng::Overcurrent::get;
    Chart chart;
    chart.title = get("Chart.title");
    chart.xTitle = get("Results.multiple");
    chart.yTitle = get("Chart.seconds");
    const auto [least, most] = plannedRange(plan);
    addCurves(chart, settings, plan, least, most);
    const TestResults shown = results ? *results : resultsOf(settings, plan);
    addPoints(chart, shown);
    addPlanned(chart, shown);
    chooseAxes(chart, plan, settings, most);
    return chart;
}

} // namespace Overcurrent::TestChart
