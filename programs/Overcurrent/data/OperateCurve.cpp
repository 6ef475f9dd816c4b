#include <Overcurrent/data/OperateCurve.h>

#include <algorithm>
#include <cmath>

namespace Overcurrent::OperateCurve {

namespace {

struct Constants {
    double k;
    double a;
};

Constants constants(CurveKind curve)
{
    switch (curve) {
    case CurveKind::VeryInverse:
        return {13.5, 1.0};
    case CurveKind::ExtremelyInverse:
        return {80.0, 2.0};
    case CurveKind::LongTimeInverse:
        return {120.0, 1.0};
    case CurveKind::StandardInverse:
    case CurveKind::DefiniteTimeCurve:
        break;
    }
    return {0.14, 0.02};
}

} // namespace

std::optional<double> operateTime(const RelaySettings& settings, double multiple)
{
    if (!(multiple > 1.0))
        return std::nullopt;
    if (settings.curve == CurveKind::DefiniteTimeCurve)
        return settings.definiteTime;
    const auto [k, a] = constants(settings.curve);
    // expm1 keeps its digits close to Is, where the power is almost 1.
    const double excess = std::expm1(a * std::log(std::min(multiple, endOfDependentTime)));
    const double time = settings.timeMultiplier * k / excess;
    return std::isfinite(time) ? std::optional(time) : std::nullopt;
}

double tolerance(const RelaySettings& settings, double expectedTime)
{
    return std::max(expectedTime * settings.tolerancePercent / 100.0,
                    settings.toleranceMilliseconds / 1000.0);
}

} // namespace Overcurrent::OperateCurve
