#include <KesDevice/HardwareManager.h>

#include <KesDevice/HardwareControl.h>
#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/detail/FaultStopper.h>
#include <KesDevice/detail/OperationTurn.h>

#include <utility>

namespace KesDevice {

std::unique_ptr<HardwareManager> HardwareManager::create()
{
    return create(HardwareControl::getNetwork());
}

std::unique_ptr<HardwareManager> HardwareManager::create(std::shared_ptr<KesDriver::IKestoNetwork> network)
{
    return std::unique_ptr<HardwareManager>(new HardwareManager(std::move(network)));
}

HardwareManager::HardwareManager(std::shared_ptr<KesDriver::IKestoNetwork> network)
    : _network(std::move(network)),
      _virtualChannels(*this),
      _faultStopper(std::make_shared<FaultStopper>()),
      _turn(std::make_unique<OperationTurn>()),
      _inserted(
          _kestos.signalInserted.connect([this](std::size_t, Kesto* const& kesto) { _onInserted(kesto); })),
      _removed(_kestos.signalRemoved.connect([this](std::size_t, Kesto* const& kesto) { _onRemoved(kesto); }))
{
    // Made before the first configuration, it outlives the last one.
    HardwareIsRunningComponent::getInstance();
    const auto tell = [this](const std::string& text) { signalKestoState.emit(nullptr, text.c_str()); };
    signalRunningChanged.setExceptionHandler(tell);
    signalStatusChanged.setExceptionHandler(tell);
    signalAvary.setExceptionHandler(tell);
}

HardwareManager::~HardwareManager()
{
    {
        const OperationTurn::Hold turn(*_turn);
        (void)_stop();
    }
    // Whoever shows the devices hears of their end before it comes.
    _kestos.setReadOnly(false);
    (void)_kestos.clear();
    _faultStopper->wait();
}

Kes::Result HardwareManager::addKesto(const Kesto::Address& address)
{
    return _kestos.addKesto(Kesto::create(address, _network->createLink(address)));
}

bool HardwareManager::isStopOnFault() const
{
    return _faultStopper->isEnabled();
}

void HardwareManager::setIsStopOnFault(bool stop)
{
    _faultStopper->setIsEnabled(stop);
}

void HardwareManager::fillFrom(const HardwareManager& other)
{
    for (const auto& kesto : other._kestos.lease()) {
        auto copy = Kesto::create(kesto->getAddress(), _network->createLink(kesto->getAddress()));
        // The values come from a device that has accepted them.
        (void)copy->auxDC().set(kesto->auxDC().getEnable(), kesto->auxDC().getVolts());
        (void)_kestos.addKesto(std::move(copy));
    }
    _syncManager.setActiveMode(other._syncManager.getActiveMode().getKind());
    _virtualChannels.setIsControlGroupsEnabled(other._virtualChannels.isControlGroupsEnabled());
    setIsStopOnFault(other.isStopOnFault());
    _statusReported = other.isStatusReported();
}

std::unique_ptr<HardwareManager> HardwareManager::clone() const
{
    auto copy = create(_network);
    copy->fillFrom(*this);
    return copy;
}

bool HardwareManager::isSimulated() const
{
    for (const auto& kesto : _kestos.lease())
        if (kesto->isSimulated())
            return true;
    return false;
}

bool HardwareManager::isBusy() const
{
    return _running || _turn->isTaken();
}

void HardwareManager::_emitRunning(bool running)
{
    HardwareIsRunningComponent::getInstance()._changeCount(running ? 1 : -1);
    signalRunningChanged.emit(running);
}

void HardwareManager::_onInserted(Kesto* kesto)
{
    _faultStopper->add(kesto->shared_from_this());
    kesto->_setFaultStopper(_faultStopper);
    auto& connections = _connections[kesto];
    connections.emplace_back(kesto->signalReport.connect(
        [this, kesto](const KesDriver::Report& report) { _onReport(kesto, report); }));
    connections.emplace_back(
        kesto->signalNotice.connect([this, kesto](const char* text) { signalKestoState.emit(kesto, text); }));
}

void HardwareManager::_onRemoved(Kesto* kesto)
{
    kesto->_setFaultStopper({});
    _faultStopper->remove(*kesto);
    _connections.erase(kesto);
}

void HardwareManager::_onReport(Kesto* kesto, const KesDriver::Report& report)
{
    KesDriver::KesAvary avary;
    if (const auto* told = std::get_if<KesDriver::KesAvary>(&report)) {
        avary = *told;
    } else if (std::holds_alternative<KesDriver::ConnectionLost>(report)) {
        avary.kestoType = kesto->getIdentifer().getType();
        avary.serialNumber = kesto->getIdentifer().getSerialNumber();
        avary.isConnectError = true;
    } else {
        return;
    }
    signalAvary.emit(avary);
}

} // namespace KesDevice
