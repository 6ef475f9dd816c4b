#include <KesDriver/ProgramNetwork.h>

#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

#include <algorithm>
#include <iterator>

namespace KesDriver {

namespace {

class ProgramNetwork : public IKestoNetwork {
public:
    std::vector<NetAddress> find() override
    {
        const auto embedded = _embedded->find();
        const auto others = _others.find();
        std::vector<NetAddress> all;
        std::set_union(embedded.begin(), embedded.end(), others.begin(), others.end(),
                       std::back_inserter(all));
        return all;
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
