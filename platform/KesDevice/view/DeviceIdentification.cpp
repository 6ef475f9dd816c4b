#include <KesDevice/view/DeviceIdentification.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesDriver/SimulatedNetwork.h>

#include <utility>

namespace KesDevice {

namespace {

struct Answer {
    Kes::Result result;
    KesDriver::KestoIdentifer identifer;
};

/// By a link and not by a device object, which would also switch the auxiliary supply.
Answer ask(const Kesto::Address& address)
{
    const auto link = KesDriver::SimulatedNetwork::getInstance().createLink(address);
    Answer answer{link->connect(), {}};
    if (answer.result)
        answer.result = link->identify(answer.identifer);
    link->disconnect();
    return answer;
}

} // namespace

DeviceIdentification::DeviceIdentification(HardwareDraft& draft, BackgroundJobs& jobs,
                                           std::function<HardwareManager*()> edited)
    : _draft(draft), _jobs(jobs), _edited(std::move(edited))
{}

void DeviceIdentification::adoptKnown()
{
    for (const auto& kesto : _edited()->getKestos().lease())
        if (kesto->getIdentifer() != KesDriver::KestoIdentifer())
            _draft.setIdentifer(kesto->getAddress(), kesto->getIdentifer());
}

bool DeviceIdentification::_adopt(const Kesto::Address& address)
{
    for (const auto& kesto : _edited()->getKestos().lease())
        if (kesto->getAddress() == address && kesto->isConnected()) {
            _draft.setIdentifer(address, kesto->getIdentifer());
            return true;
        }
    return false;
}

void DeviceIdentification::identify(const Kesto::Address& address)
{
    if (_adopt(address))
        return;
    _draft.setAsking(address);
    _jobs.run("KesIdentify", _token, [this, address] {
        return [this, address, answer = ask(address)] {
            if (answer.result)
                _draft.setIdentifer(address, answer.identifer);
            else
                _draft.setIdentityError(address,
                                        Kes::ObjectErrorHelper::toDisplayString({answer.result.getError()}));
        };
    });
}

} // namespace KesDevice
