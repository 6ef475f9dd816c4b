#include <KesDevice/view/DeviceIdentification.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesDevice/view/detail/DeviceViewText.h>

#include <utility>

namespace KesDevice {

namespace {

struct Answer {
    Kes::Result result = false;
    KesDriver::KestoIdentity identity;
    bool isSimulated = false;
};

} // namespace

DeviceIdentification::DeviceIdentification(HardwareDraft& draft, BackgroundJobs& jobs,
                                           std::function<HardwareManager*()> edited)
    : _draft(draft), _jobs(jobs), _edited(std::move(edited))
{}

void DeviceIdentification::adoptKnown()
{
    for (const auto& kesto : _edited()->getKestos().lease())
        if (kesto->getIdentifer() != KesDriver::KestoIdentifer())
            _draft.setIdentifer(kesto->getAddress(), kesto->getIdentifer(), kesto->isSimulated());
}

bool DeviceIdentification::_adopt(const Kesto::Address& address)
{
    for (const auto& kesto : _edited()->getKestos().lease())
        if (kesto->getAddress() == address && kesto->isConnected()) {
            _draft.setIdentifer(address, kesto->getIdentifer(), kesto->isSimulated());
            return true;
        }
    return false;
}

void DeviceIdentification::identify(const Kesto::Address& address)
{
    if (_adopt(address))
        return;
    _draft.setAsking(address);
    const bool isBegun = _jobs.run("KesIdentify", _token, [this, address, network = _draft.getNetwork()] {
        Answer answer;
        answer.result = Kesto::identify(*network, address, answer.identity, answer.isSimulated);
        return [this, address, answer] {
            if (answer.result)
                _draft.setIdentifer(address, answer.identity.identifer, answer.isSimulated);
            else
                _draft.setIdentityError(address,
                                        Kes::ObjectErrorHelper::toDisplayString({answer.result.getError()}));
        };
    });
    if (!isBegun)
        _draft.setIdentityError(address, lng::DeviceView::get("Jobs.refused"));
}

} // namespace KesDevice
