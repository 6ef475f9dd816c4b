#include <Overcurrent/bench/SimulatedBench.h>

#include <Overcurrent/run/TestRun.h>

#include <KesCommon/Log.h>
#include <KesDriver/simulated/SimulatedNetwork.h>
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
    case CurveKind::StandardInverse:
        break;
    }
    return Curve::StandardInverse;
}

} // namespace

std::shared_ptr<KesDriver::ISimulatedTestObject> SimulatedBench::makeRelay(const RelaySettings& settings)
{
    KesDriver::OvercurrentRelay::Settings relay;
    relay.settingCurrent = settings.settingCurrent;
    relay.timeMultiplier = settings.timeMultiplier;
    relay.curve = toCurve(settings.curve);
    relay.definiteTime = settings.definiteTime;
    relay.tripInput = TestRun::tripInput;
    relay.startInput = TestRun::startInput;
    return std::make_shared<KesDriver::OvercurrentRelay>(relay);
}

void SimulatedBench::wire(const KesDevice::HardwareManager& hardware, const RelaySettings& settings) const
{
    const auto network = KesDriver::SimulatedNetwork::getEmbedded();
    for (const auto& kesto : hardware.getKestos().lease()) {
        if (!kesto->isSimulated())
            continue;
        const auto device = network->get(kesto->getAddress());
        if (!device)
            continue;
        device->connectTestObject(makeRelay(settings));
        if (!device->setSpeed(_speed))
            KesLog::Log::writeWarn("The simulated device refuses its speed factor.");
    }
}

} // namespace Overcurrent
