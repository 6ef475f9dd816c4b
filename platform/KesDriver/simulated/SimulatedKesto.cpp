#include <KesDriver/simulated/SimulatedKesto.h>

#include <KesDriver/DriverText.h>
#include <KesDriver/simulated/serving/detail/SessionSet.h>

#include <utility>

namespace KesDriver {

SimulatedKesto::SimulatedKesto(KestoIdentifer identifer, const OutputLimits& limits)
    : SimulatedKesto(KestoIdentity{identifer, "1.0.0", "2026-01-15"}, limits)
{}

SimulatedKesto::SimulatedKesto(KestoIdentity identity, const OutputLimits& limits)
    : _host(SimulatedHost::start(std::move(identity), limits)), _served(ServedDevice::create(_host))
{}

SimulatedKesto::~SimulatedKesto()
{
    _host->shutDown();
    _sessions.reset();
    _served->end();
}

const KestoIdentity& SimulatedKesto::getIdentity() const
{
    return _host->getIdentity();
}

KestoIdentifer SimulatedKesto::getIdentifer() const
{
    return getIdentity().identifer;
}

bool SimulatedKesto::setSpeed(double factor)
{
    return _host->use([&](SimulatedDevice& device) { return device.setSpeed(factor); });
}

bool SimulatedKesto::connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject)
{
    return _host->use(
        [&](SimulatedDevice& device) { return device.connectTestObject(std::move(testObject)); });
}

void SimulatedKesto::setBurden(double ohms)
{
    _host->use([&](SimulatedDevice& device) { device.setBurden(ohms); });
}

void SimulatedKesto::setInput(unsigned input, bool isClosed)
{
    _host->use([&](SimulatedDevice& device) { device.setInput(input, isClosed); });
}

OutputState SimulatedKesto::getOutputs() const
{
    return _host->use([](SimulatedDevice& device) { return device.getOutputs(); });
}

bool SimulatedKesto::isWorking() const
{
    return _host->use([](SimulatedDevice& device) { return device.isWorking(); });
}

unsigned SimulatedKesto::getEnergisings() const
{
    return _host->use([](SimulatedDevice& device) { return device.getEnergisings(); });
}

int SimulatedKesto::_connect()
{
    std::lock_guard lock(_mutex);
    if (!_sessions)
        _sessions = std::make_unique<SessionSet>(_served);
    return _sessions->connect();
}

bool SimulatedKesto::_isReachable() const
{
    return _served->getSessions().canAnswerWithin(_timeout);
}

std::string SimulatedKesto::_getOwner() const
{
    const auto owner = _served->getControl().getOwner();
    return owner.address == SessionSocket::localAddress ? lng::Driver::get("Link.thisProgram") : owner.name;
}

void SimulatedKesto::setTimeout(std::chrono::milliseconds timeout)
{
    _timeout = timeout;
}

void SimulatedKesto::setFaultRepeatInterval(std::chrono::milliseconds interval)
{
    _host->use([&](SimulatedDevice& device) { device.setFaultRepeatInterval(interval); });
}

void SimulatedKesto::_raiseFault(const std::function<void(SimulatedFaults&)>& raise)
{
    _host->use([&](SimulatedDevice& device) { device.raiseFault(raise); });
}

void SimulatedKesto::simulateOverload(unsigned channel)
{
    if (channel < channelCount)
        _raiseFault([=](SimulatedFaults& faults) { faults.channels[channel].isOverload = true; });
}

void SimulatedKesto::simulateOverheat(unsigned channel)
{
    if (channel < channelCount)
        _raiseFault([=](SimulatedFaults& faults) { faults.channels[channel].isOverheat = true; });
}

void SimulatedKesto::simulateChannelLost(unsigned channel)
{
    if (channel < channelCount)
        _raiseFault([=](SimulatedFaults& faults) { faults.channels[channel].isDisconnected = true; });
}

void SimulatedKesto::simulateQuickShutdown()
{
    _raiseFault([](SimulatedFaults& faults) { faults.isQuickShutdown = true; });
}

void SimulatedKesto::clearFaults()
{
    _host->use([](SimulatedDevice& device) { device.clearFaults(); });
}

void SimulatedKesto::simulateConnectionLoss()
{
    _host->simulateConnectionLoss();
}

void SimulatedKesto::dropConnections()
{
    _served->getSessions().dropOthers(0);
}

void SimulatedKesto::setSilent(bool silent)
{
    _served->getSessions().setSilent(silent, 0);
}

void SimulatedKesto::setAnswerDelay(std::chrono::milliseconds delay)
{
    _served->getSessions().setDelay(delay, 0);
}

void SimulatedKesto::setNonsense(bool nonsense)
{
    _host->use([&](SimulatedDevice& device) { device.setNonsense(nonsense); });
}

} // namespace KesDriver
