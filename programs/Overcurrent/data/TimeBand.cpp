#include <Overcurrent/data/TimeBand.h>

#include <Overcurrent/data/OperateCurve.h>

#include <algorithm>

namespace Overcurrent {

std::optional<TimeBand> TimeBand::at(const RelaySettings& settings, double multiple)
{
    const auto expected = OperateCurve::operateTime(settings, multiple);
    if (!expected)
        return std::nullopt;
    const double share = settings.currentTolerancePercent / 100.0;
    // Where the tolerance depends on the current, the wider one of what the relay may take it for.
    const double lowest = multiple * (1.0 - share);
    const auto tolerance = [&](double time) { return OperateCurve::tolerance(settings, lowest, time); };
    const double fastest = *OperateCurve::operateTime(settings, multiple * (1.0 + share));
    TimeBand band{std::max(0.0, fastest - tolerance(fastest)), *expected, std::nullopt};
    if (const auto slowest = OperateCurve::operateTime(settings, lowest))
        band.latest = *slowest + tolerance(*slowest);
    return band;
}

} // namespace Overcurrent
