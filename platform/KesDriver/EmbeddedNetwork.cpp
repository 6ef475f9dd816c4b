#include <KesDriver/EmbeddedNetwork.h>

#include <KesDriver/simulated/SimulatedNetwork.h>

namespace KesDriver {

std::shared_ptr<IKestoNetwork> getEmbeddedNetwork()
{
    return SimulatedNetwork::getEmbedded();
}

} // namespace KesDriver
