#include <KesDevice/Kesto.h>

#include <KesDevice/KestoImpl.h>
#include <KesDriver/OutputCheck.h>
#include <KesDriver/SimulatedNetwork.h>

#include <algorithm>
#include <utility>

namespace KesDevice {

Kesto::Kesto(const Address& address)
    : Kesto(address, KesDriver::SimulatedNetwork::getInstance().createLink(address))
{}

Kesto::Kesto(const Address& address, std::unique_ptr<KesDriver::IKestoLink> link)
    : _address(address), _auxDC(*this), _impl(std::make_unique<Impl>(*this, std::move(link)))
{}

Kesto::~Kesto() = default;

KesDriver::KestoIdentifer Kesto::getIdentifer() const
{
    return _impl->getIdentifer();
}

std::string Kesto::toDisplayString() const
{
    return _impl->getDisplayString();
}

bool Kesto::isSimulated() const
{
    return _impl->link->isSimulated();
}

KesDriver::OutputLimits Kesto::getLimits() const
{
    return _impl->getLimits();
}

Kes::Nullable<std::string> Kesto::getOperationError() const
{
    return _impl->getOperationError();
}

bool Kesto::isConnected() const
{
    return _impl->link->isConnected();
}

Kes::Result Kesto::connect()
{
    return _impl->connect();
}

void Kesto::disconnect()
{
    _impl->disconnect();
}

Kes::Result Kesto::updateState()
{
    return _impl->updateState();
}

Kes::Result Kesto::startWorkingMode()
{
    const unsigned epoch = _impl->getEpoch();
    auto result = _impl->link->startWorkingMode();
    if (result)
        _impl->setOperationError(std::string(), epoch);
    return result;
}

Kes::Result Kesto::stopWorkingMode()
{
    return _impl->link->stopWorkingMode();
}

Kes::Result Kesto::setOutputs(const KesDriver::OutputState& outputs)
{
    auto result = KesDriver::checkOutputs(outputs, getLimits());
    return result ? _impl->link->setOutputs(outputs) : result;
}

Kes::Result Kesto::runSequence(const KesDriver::OutputSequence& sequence)
{
    if (auto result = KesDriver::checkSequence(sequence, getLimits()); !result)
        return result;
    // Before the call: the first step may be reported before the answer is there.
    const auto previous = _impl->stepCount.exchange(sequence.size());
    auto result = _impl->link->runSequence(sequence);
    if (!result)
        _impl->stepCount = previous;
    return result;
}

Kes::Result Kesto::stopOutputs()
{
    return _impl->link->stopOutputs();
}

KesDriver::DeviceTime Kesto::getTime() const
{
    return std::max(_impl->link->getTime(), KesDriver::DeviceTime(0));
}

void Kesto::_retire()
{
    _impl->retire();
}

Kes::Result Kesto::_sendAuxDC(bool enable, double volts)
{
    return isConnected() ? _impl->link->setAuxDC(enable, volts) : Kes::Result(true);
}

} // namespace KesDevice
