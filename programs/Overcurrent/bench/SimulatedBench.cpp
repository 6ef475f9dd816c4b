#include <Overcurrent/bench/SimulatedBench.h>

#include <Overcurrent/bench/SimulatedRelay.h>

#include <KesCommon/Log.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

namespace Overcurrent {

void SimulatedBench::wire(const KesDevice::HardwareManager& hardware, const RelaySettings& settings) const
{
    const auto network = KesDriver::SimulatedNetwork::getEmbedded();
    for (const auto& kesto : hardware.getKestos().lease()) {
        if (!kesto->isSimulated())
            continue;
        const auto device = network->get(kesto->getAddress());
        if (!device)
            continue;
        device->connectTestObject(std::make_shared<SimulatedRelay>(settings));
        if (!device->setSpeed(_speed))
            KesLog::Log::writeWarn("The simulated device refuses its speed factor.");
    }
}

} // namespace Overcurrent
