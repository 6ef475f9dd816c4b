#include <Overcurrent/bench/BenchRelay.h>

#include <KesDriver/simulated/relays/OvercurrentRelay.h>

namespace Overcurrent {

namespace {

KesDriver::OvercurrentRelay::Curve toCurve(CurveKind kind)
{
    using Curve = KesDriver::OvercurrentRelay::Curve;
    switch (kind) {
    case CurveKind::VeryInverse:
        return Curve::VeryInverse;
    case CurveKind::ExtremelyInverse:
        return Curve::ExtremelyInverse;
    case CurveKind::LongTimeInverse:
        return Curve::LongTimeInverse;
    case CurveKind::DefiniteTimeCurve:
        return Curve::DefiniteTime;
    case CurveKind::IeeeModeratelyInverse:
        return Curve::IeeeModeratelyInverse;
    case CurveKind::IeeeVeryInverse:
        return Curve::IeeeVeryInverse;
    case CurveKind::IeeeExtremelyInverse:
        return Curve::IeeeExtremelyInverse;
    case CurveKind::TableCurve:
        return Curve::Table;
    case CurveKind::StandardInverse:
        break;
    }
    return Curve::StandardInverse;
}

KesDriver::OvercurrentRelay::Direction toDirection(DirectionKind kind)
{
    using Direction = KesDriver::OvercurrentRelay::Direction;
    if (kind == DirectionKind::NonDirectional)
        return Direction::None;
    return kind == DirectionKind::ForwardOnly ? Direction::Forward : Direction::Reverse;
}

KesDriver::OvercurrentRelay::Stage toStage(const Stage& stage)
{
    KesDriver::OvercurrentRelay::Stage made;
    made.isUsed = stage.isUsed;
    made.settingCurrent = stage.settingCurrent;
    made.timeMultiplier = stage.timeMultiplier;
    made.curve = toCurve(stage.curve);
    made.definiteTime = stage.definiteTime;
    for (const auto& [multiple, seconds] : stage.table)
        made.table.emplace_back(multiple, seconds);
    made.direction = toDirection(stage.direction);
    return made;
}

/// With outputs in parallel one input is wired.
KesDriver::OvercurrentRelay::Connection connectionOf(const TestPlan& plan)
{
    using Connection = KesDriver::OvercurrentRelay::Connection;
    if (plan.outputsPerPhase < 2)
        return Connection::Phases;
    switch (plan.faults.front()) {
    case Fault::B:
        return Connection::PhaseB;
    case Fault::C:
        return Connection::PhaseC;
    case Fault::N:
        return Connection::Residual;
    default:
        return Connection::PhaseA;
    }
}

} // namespace

std::shared_ptr<KesDriver::ISimulatedTestObject> makeBenchRelay(const RelaySettings& settings,
                                                                const TestPlan& plan)
{
    KesDriver::OvercurrentRelay::Settings relay;
    for (std::size_t i = 0; i < settings.stages.size(); ++i)
        relay.stages[i] = toStage(settings.stages[i]);
    relay.characteristicAngle = settings.characteristicAngle;
    relay.connection = connectionOf(plan);
    relay.tripInput = settings.tripInput;
    relay.startInput = settings.startInput;
    return std::make_shared<KesDriver::OvercurrentRelay>(relay);
}

} // namespace Overcurrent
