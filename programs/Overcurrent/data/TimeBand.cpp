#include <Overcurrent/data/TimeBand.h>

#include <Overcurrent/data/OperateCurve.h>
#include <Overcurrent/data/StageTimes.h>

#include <algorithm>

namespace Overcurrent {

namespace {

/// The ends of one stage's times; what it need not do or cannot do has none.
struct StageBand {
    std::optional<double> earliest;
    std::optional<double> latest;
};

StageBand bandOf(const RelaySettings& settings, const Stage& stage, double multiple)
{
    const double share = settings.currentTolerancePercent / 100.0;
    // Where the tolerance depends on the current, the wider one of what the relay may take it for.
    const double lowest = multiple * (1.0 - share);
    const auto tolerance = [&](double time) { return OperateCurve::tolerance(settings, lowest, time); };
    StageBand band;
    if (const auto fastest = OperateCurve::operateTime(stage, multiple * (1.0 + share)))
        band.earliest = std::max(0.0, *fastest - tolerance(*fastest));
    if (const auto slowest = OperateCurve::operateTime(stage, lowest))
        band.latest = *slowest + tolerance(*slowest);
    return band;
}

void takeLess(std::optional<double>& least, const std::optional<double>& value)
{
    if (value && (!least || *value < *least))
        least = value;
}

} // namespace

std::optional<TimeBand> TimeBand::at(const RelaySettings& settings, const FaultCase& faultCase,
                                     double multiple)
{
    const auto trip = StageTimes::operate(settings, faultCase, multiple);
    if (!trip)
        return std::nullopt;
    StageBand all;
    for (const auto stage : allStages) {
        const double own = StageTimes::multipleOf(settings, stage, faultCase, multiple);
        const auto band = bandOf(settings, settings[stage], own);
        takeLess(all.earliest, band.earliest);
        takeLess(all.latest, band.latest);
    }
    return TimeBand{all.earliest.value_or(0.0), trip->seconds, all.latest, trip->stage};
}

} // namespace Overcurrent
