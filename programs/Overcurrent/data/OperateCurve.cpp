#include <Overcurrent/data/OperateCurve.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace Overcurrent::OperateCurve {

namespace {

struct Constants {
    double k;
    double a;
    double c = 0.0;
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
    case CurveKind::IeeeModeratelyInverse:
        return {0.0515, 0.02, 0.114};
    case CurveKind::IeeeVeryInverse:
        return {19.61, 2.0, 0.491};
    case CurveKind::IeeeExtremelyInverse:
        return {28.2, 2.0, 0.1217};
    case CurveKind::StandardInverse:
    case CurveKind::DefiniteTimeCurve:
    case CurveKind::TableCurve:
        break;
    }
    return {0.14, 0.02};
}

std::optional<double> fromTable(const KesTree::CurveTable::Pairs& table, double multiple)
{
    // A multiple that has been calculated may be a hair off.
    constexpr double rounding = 1e-9;
    if (table.empty() || multiple < table.front().multiple * (1.0 - rounding))
        return std::nullopt;
    const auto next = std::find_if(table.begin(), table.end(),
                                   [multiple](const auto& pair) { return pair.multiple > multiple; });
    if (next == table.end() || next == table.begin())
        return next == table.end() ? table.back().seconds : table.front().seconds;
    const auto& from = *std::prev(next);
    const double share = std::log(multiple / from.multiple) / std::log(next->multiple / from.multiple);
    return from.seconds * std::pow(next->seconds / from.seconds, share);
}

/// What the assigned error is multiplied with. At a common bound the larger one holds: nobody knows on which
/// side of it the current really is.
double errorFactor(double multiple)
{
    constexpr double rounding = 1e-9;
    if (multiple > 10.0 + rounding)
        return 1.0;
    return multiple > 5.0 + rounding ? 1.5 : 2.5;
}

} // namespace

std::optional<double> operateTime(const Stage& stage, double multiple)
{
    if (!(multiple > 1.0))
        return std::nullopt;
    if (stage.curve == CurveKind::DefiniteTimeCurve)
        return stage.definiteTime;
    if (stage.curve == CurveKind::TableCurve)
        return fromTable(stage.table, multiple);
    const auto [k, a, c] = constants(stage.curve);
    // expm1 keeps its digits close to Is, where the power is almost 1.
    const double excess = std::expm1(a * std::log(std::min(multiple, endOfDependentTime)));
    const double time = stage.timeMultiplier * (k / excess + c);
    return std::isfinite(time) ? std::optional(time) : std::nullopt;
}

double tolerance(const RelaySettings& settings, double multiple, double expectedTime)
{
    const bool isAssigned = settings.toleranceKind == TimeToleranceKind::AssignedError;
    const double percent = settings.tolerancePercent * (isAssigned ? errorFactor(multiple) : 1.0);
    return std::max(expectedTime * percent / 100.0, settings.toleranceMilliseconds / 1000.0);
}

} // namespace Overcurrent::OperateCurve
