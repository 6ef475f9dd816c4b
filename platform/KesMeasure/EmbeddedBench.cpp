#include <KesMeasure/EmbeddedBench.h>

#include <KesCommon/Log.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

namespace KesMeasure {

void EmbeddedBench::wire(const KesDevice::HardwareManager& hardware,
                         const MakeTestObject& makeTestObject) const
{
    const auto network = KesDriver::SimulatedNetwork::getEmbedded();
    for (const auto& kesto : hardware.getKestos().lease()) {
        if (!kesto->isSimulated())
            continue;
        const auto device = network->get(kesto->getAddress());
        if (!device)
            continue;
        device->connectTestObject(makeTestObject());
        if (!device->setSpeed(_speed))
            KesLog::Log::writeWarn("The simulated device refuses its speed factor.");
    }
}

} // namespace KesMeasure
