#include <Overcurrent/data/StageTimes.h>

#include <Overcurrent/data/OperateCurve.h>

namespace Overcurrent::StageTimes {

namespace {

bool looksThere(const RelaySettings& settings, StageId stage, const FaultCase& faultCase)
{
    const auto direction = settings[stage].direction;
    if (direction == DirectionKind::NonDirectional)
        return true;
    // Currents that are the same in all phases lie in both directions against the voltages of the phases.
    if (faultCase.fault == Fault::N && stage != StageId::Residual)
        return true;
    return (direction == DirectionKind::ForwardOnly) == (faultCase.direction == FaultDirection::Forward);
}

/// The fault's current at which the stage sees its Is; only of one that counts.
double currentOf(const RelaySettings& settings, StageId stage, const FaultCase& faultCase)
{
    return settings[stage].settingCurrent / shareOf(settings, stage, faultCase);
}

} // namespace

double shareOf(const RelaySettings& settings, StageId stage, const FaultCase& faultCase)
{
    if (!settings[stage].isUsed || !looksThere(settings, stage, faultCase))
        return 0.0;
    if (stage == StageId::Residual)
        return Faults::residualShare(faultCase.fault);
    return faultCase.isInResidualInput ? 0.0 : Faults::phaseShare(faultCase.fault);
}

std::optional<StageId> reference(const RelaySettings& settings, const FaultCase& faultCase)
{
    for (const auto stage : allStages) {
        const bool isResidual = stage == StageId::Residual;
        if ((isResidual || faultCase.fault != Fault::N) && shareOf(settings, stage, faultCase) > 0.0)
            return stage;
    }
    return std::nullopt;
}

double referenceCurrent(const RelaySettings& settings, const FaultCase& faultCase)
{
    const auto stage = reference(settings, faultCase);
    return stage ? currentOf(settings, *stage, faultCase) : 0.0;
}

std::optional<StageId> firstToPickUp(const RelaySettings& settings, const FaultCase& faultCase)
{
    std::optional<StageId> first;
    for (const auto stage : allStages)
        if (shareOf(settings, stage, faultCase) > 0.0 &&
            (!first || currentOf(settings, stage, faultCase) < currentOf(settings, *first, faultCase)))
            first = stage;
    return first;
}

double pickUpCurrent(const RelaySettings& settings, const FaultCase& faultCase)
{
    const auto stage = firstToPickUp(settings, faultCase);
    return stage ? currentOf(settings, *stage, faultCase) : 0.0;
}

double multipleOf(const RelaySettings& settings, StageId stage, const FaultCase& faultCase, double multiple)
{
    if (shareOf(settings, stage, faultCase) == 0.0)
        return 0.0;
    // Exactly the same for the stage that is the reference.
    return multiple * (referenceCurrent(settings, faultCase) / currentOf(settings, stage, faultCase));
}

std::optional<Trip> operate(const RelaySettings& settings, const FaultCase& faultCase, double multiple)
{
    std::optional<Trip> first;
    for (const auto stage : allStages) {
        const auto time =
            OperateCurve::operateTime(settings[stage], multipleOf(settings, stage, faultCase, multiple));
        if (time && (!first || *time < first->seconds))
            first = {stage, *time};
    }
    return first;
}

} // namespace Overcurrent::StageTimes
