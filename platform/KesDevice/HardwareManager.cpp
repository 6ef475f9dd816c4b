#include <KesDevice/HardwareManager.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/HardwareManagerImpl.h>
#include <KesDevice/HardwareManagerText.h>

#include <utility>

namespace KesDevice {

namespace {

Kes::Result prepareKesto(Kesto& kesto)
{
    const bool wasConnected = kesto.isConnected();
    auto result = kesto.updateState();
    // A device that was switched off and on again is found out only now.
    return !result && wasConnected ? kesto.connect() : result;
}

Kes::Result stopKesto(Kesto& kesto)
{
    return kesto.isConnected() ? kesto.stopWorkingMode() : Kes::Result(true);
}

} // namespace

std::unique_ptr<HardwareManager> HardwareManager::create()
{
    return std::unique_ptr<HardwareManager>(new HardwareManager);
}

HardwareManager::HardwareManager() : _virtualChannels(*this), _impl(std::make_unique<Impl>(*this)) {}

HardwareManager::~HardwareManager()
{
    {
        const OperationTurn::Hold turn(_impl->turn);
        if (_running)
            (void)_impl->onEach(_kestos.lease(), stopKesto);
        if (_running.exchange(false))
            _impl->countRunning(-1);
    }
    // Whoever shows the devices hears of their end before it comes.
    _kestos.setReadOnly(false);
    (void)_kestos.clear();
    _impl->waitForStops();
}

void HardwareManager::fillFrom(const HardwareManager& other)
{
    for (const auto& kesto : other._kestos.lease()) {
        if (_kestos.find(kesto->getAddress()))
            continue;
        auto copy = std::make_unique<Kesto>(kesto->getAddress());
        (void)copy->auxDC().set(kesto->auxDC().getEnable(), kesto->auxDC().getVolts());
        (void)_kestos.addKesto(std::move(copy));
    }
    _syncManager.setActiveMode(other._syncManager.getActiveMode().getKind());
    _virtualChannels.setIsControlGroupsEnabled(other._virtualChannels.isControlGroupsEnabled());
    _stopOnFault = other.isStopOnFault();
    _statusReported = other.isStatusReported();
}

std::unique_ptr<HardwareManager> HardwareManager::clone() const
{
    auto copy = create();
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
    return _running || _impl->turn.isTaken();
}

Kes::Result HardwareManager::prepare()
{
    const OperationTurn::Hold turn(_impl->turn);
    if (_impl->isRetired)
        return Kes::Result::failure(lng::HardwareManager::get("Errors.General.replaced"));
    const Impl::Status status(*this);
    const auto kestos = _kestos.lease();
    for (const auto& kesto : kestos)
        status.show(Kes::StringHelper::format(lng::HardwareManager::get("Status.connecting"),
                                              kesto->getAddress().to_string()));
    return Impl::toResult("Errors.General.prepare", _impl->onEach(kestos, prepareKesto));
}

Kes::Result HardwareManager::startWorkingMode()
{
    // What a fault of the last run has stopped must not stop this one.
    _impl->waitForStops();
    const OperationTurn::Hold turn(_impl->turn);
    const auto kestos = _kestos.lease();
    if (auto result = _impl->checkStart(kestos); !result)
        return result;
    const Impl::Status status(*this);
    status.show(lng::HardwareManager::get("Status.starting"));
    const auto errors = _impl->onEach(kestos, [](Kesto& kesto) { return kesto.startWorkingMode(); });
    if (errors.empty())
        _impl->setRunning(true);
    else
        (void)_impl->onEach(kestos, stopKesto);
    return Impl::toResult("Errors.General.startWorkingMode", errors);
}

Kes::Result HardwareManager::stopWorkingMode()
{
    const OperationTurn::Hold turn(_impl->turn);
    if (!_running)
        return true;
    const Impl::Status status(*this);
    status.show(lng::HardwareManager::get("Status.stopping"));
    const auto errors = _impl->onEach(_kestos.lease(), stopKesto);
    _impl->setRunning(false);
    return Impl::toResult("Errors.General.stopWorkingMode", errors);
}

Kes::Result HardwareManager::disconnect()
{
    const OperationTurn::Hold turn(_impl->turn);
    auto result = stopWorkingMode();
    const Impl::Status status(*this);
    status.show(lng::HardwareManager::get("Status.disconnecting"));
    for (const auto& kesto : _kestos.lease())
        kesto->disconnect();
    return result;
}

void HardwareManager::_retire()
{
    _impl->isRetired = true;
    (void)disconnect();
    for (const auto& kesto : _kestos.lease())
        kesto->_retire();
}

} // namespace KesDevice
