#include <KesDriver/SimulatedKesto.h>

#include <KesDriver/SimulatedKestoImpl.h>
#include <KesDriver/SimulatedLink.h>

#include <utility>

namespace KesDriver {

SimulatedKesto::SimulatedKesto(KestoIdentifer identifer, OutputLimits limits)
    : _impl(std::make_shared<Impl>(identifer, limits))
{
    _impl->start(_impl);
}

SimulatedKesto::~SimulatedKesto()
{
    _impl->shutDown();
}

KestoIdentifer SimulatedKesto::getIdentifer() const
{
    return _impl->getIdentifer();
}

bool SimulatedKesto::setSpeed(double factor)
{
    return _impl->setSpeed(factor);
}

bool SimulatedKesto::connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject)
{
    return _impl->connectTestObject(std::move(testObject));
}

OutputState SimulatedKesto::getOutputs() const
{
    return _impl->getOutputs();
}

std::unique_ptr<IKestoLink> SimulatedKesto::createLink(const std::shared_ptr<SimulatedKesto>& device,
                                                       const std::string& name)
{
    auto find = [device = std::weak_ptr(device)] { return device.lock(); };
    const bool isNamed = !name.empty() || !device;
    return _createLink(std::move(find), isNamed ? name : device->getIdentifer().toDisplayString());
}

std::unique_ptr<IKestoLink> SimulatedKesto::_createLink(std::function<std::shared_ptr<SimulatedKesto>()> find,
                                                        const std::string& name)
{
    return std::make_unique<SimulatedLink>(std::move(find), name);
}

void SimulatedKesto::setTimeout(std::chrono::milliseconds timeout)
{
    _impl->setTimeout(timeout);
}

void SimulatedKesto::setFaultRepeatInterval(std::chrono::milliseconds interval)
{
    _impl->setFaultRepeatInterval(interval);
}

void SimulatedKesto::simulateOverload(unsigned channel)
{
    if (channel < channelCount)
        _impl->raiseFault([=](SimulatedFaults& faults) { faults.channels[channel].isOverload = true; });
}

void SimulatedKesto::simulateOverheat(unsigned channel)
{
    if (channel < channelCount)
        _impl->raiseFault([=](SimulatedFaults& faults) { faults.channels[channel].isOverheat = true; });
}

void SimulatedKesto::simulateChannelLost(unsigned channel)
{
    if (channel < channelCount)
        _impl->raiseFault([=](SimulatedFaults& faults) { faults.channels[channel].isDisconnected = true; });
}

void SimulatedKesto::simulateQuickShutdown()
{
    _impl->raiseFault([](SimulatedFaults& faults) { faults.isQuickShutdown = true; });
}

void SimulatedKesto::clearFaults()
{
    _impl->clearFaults();
}

void SimulatedKesto::simulateConnectionLoss()
{
    _impl->simulateConnectionLoss();
}

void SimulatedKesto::setSilent(bool silent)
{
    _impl->setSilent(silent);
}

void SimulatedKesto::setAnswerDelay(std::chrono::milliseconds delay)
{
    _impl->setAnswerDelay(delay);
}

void SimulatedKesto::setNonsense(bool nonsense)
{
    _impl->setNonsense(nonsense);
}

} // namespace KesDriver
