#include <KesDriver/ProgramNetwork.h>

#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

namespace KesDriver {

namespace {

class ProgramNetwork : public IKestoNetwork {
public:
    Kes::Result find(const FoundListener& found, std::stop_token stop) override
    {
        if (auto result = _embedded->find(found, stop); !result)
            return result;
        const auto tellOther = [&](const FoundDevice& device) {
            if (!_embedded->get(device.address))
                found(device);
        };
        return _others.find(tellOther, stop);
    }

    std::unique_ptr<IKestoLink> createLink(const NetAddress& address) override
    {
        return _embedded->get(address) ? _embedded->createLink(address) : _others.createLink(address);
    }

private:
    const std::shared_ptr<SimulatedNetwork> _embedded = SimulatedNetwork::getEmbedded();
    TcpNetwork _others;
};

} // namespace

std::shared_ptr<IKestoNetwork> getProgramNetwork()
{
    static const auto network = std::make_shared<ProgramNetwork>();
    return network;
}

} // namespace KesDriver
