#include <Overcurrent/bench/SimulatedBench.h>

#include <Overcurrent/bench/SimulatedRelay.h>

#include <KesCommon/Log.h>
#include <KesDriver/SimulatedNetwork.h>

namespace Overcurrent {

void SimulatedBench::wire(const KesDevice::HardwareManager& hardware, const RelaySettings& settings) const
{
    for (const auto* kesto : hardware.getKestos().getItems()) {
        if (!kesto->isSimulated())
            continue;
        const auto device = KesDriver::SimulatedNetwork::getInstance().find(kesto->getAddress());
        if (!device)
            continue;
        device->connectTestObject(std::make_shared<SimulatedRelay>(settings));
        if (!device->setSpeed(_speed))
            KesLog::Log::writeWarn("The simulated device refuses its speed factor.");
    }
}

} // namespace Overcurrent
