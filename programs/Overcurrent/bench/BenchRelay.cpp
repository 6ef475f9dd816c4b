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
    case CurveKind::StandardInverse:
        break;
    }
    return Curve::StandardInverse;
}

} // namespace

std::shared_ptr<KesDriver::ISimulatedTestObject> makeBenchRelay(const RelaySettings& settings)
{
    KesDriver::OvercurrentRelay::Settings relay;
    relay.settingCurrent = settings.settingCurrent;
    relay.timeMultiplier = settings.timeMultiplier;
    relay.curve = toCurve(settings.curve);
    relay.definiteTime = settings.definiteTime;
    relay.tripInput = settings.tripInput;
    relay.startInput = settings.startInput;
    return std::make_shared<KesDriver::OvercurrentRelay>(relay);
}

} // namespace Overcurrent
