#include <KesDriver/SimulatedLink.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/SimulatedKestoImpl.h>

#include <utility>

namespace KesDriver {

SimulatedLink::SimulatedLink(Find find, std::string name)
    : _find(std::move(find)), _name(std::move(name)), _port(std::make_shared<SimulatedPort>())
{}

SimulatedLink::~SimulatedLink()
{
    setListener(nullptr);
    disconnect();
}

SimulatedLink::Device SimulatedLink::_getDevice() const
{
    std::lock_guard lock(_mutex);
    return _device.lock();
}

template <typename... Parameters, typename... Arguments>
Kes::Result
SimulatedLink::_call(Kes::Result (SimulatedKesto::Impl::*operation)(const std::shared_ptr<SimulatedPort>&,
                                                                    const std::string&, Parameters...),
                     Arguments&&... arguments) const
{
    if (const auto device = _getDevice())
        return (*device.*operation)(_port, _name, std::forward<Arguments>(arguments)...);
    return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Link.notConnected"), _name));
}

bool SimulatedLink::isSimulated() const
{
    return isConnected() || _find();
}

Kes::Result SimulatedLink::connect()
{
    const auto found = _find();
    if (!found)
        return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Link.noDevice"), _name));
    const auto device = found->_impl;
    if (const auto previous = _getDevice(); previous && previous != device)
        previous->disconnect(_port);
    {
        std::lock_guard lock(_mutex);
        _device = device;
    }
    return device->connect(_port, _name);
}

void SimulatedLink::disconnect()
{
    if (const auto device = _getDevice())
        device->disconnect(_port);
}

bool SimulatedLink::isConnected() const
{
    const auto device = _getDevice();
    return device && device->isConnected(_port);
}

Kes::Result SimulatedLink::identify(KestoIdentifer& identifer)
{
    return _call(&SimulatedKesto::Impl::identify, identifer);
}

Kes::Result SimulatedLink::readState(KestoState& state)
{
    return _call(&SimulatedKesto::Impl::readState, state);
}

OutputLimits SimulatedLink::getLimits() const
{
    const auto device = _getDevice();
    return device ? device->getLimits() : OutputLimits{};
}

Kes::Result SimulatedLink::setAuxDC(bool enable, double volts)
{
    return _call(&SimulatedKesto::Impl::setAuxDC, enable, volts);
}

Kes::Result SimulatedLink::startWorkingMode()
{
    return _call(&SimulatedKesto::Impl::startWorkingMode);
}

Kes::Result SimulatedLink::stopWorkingMode()
{
    return _call(&SimulatedKesto::Impl::stopWorkingMode);
}

Kes::Result SimulatedLink::setOutputs(const OutputState& outputs)
{
    return _call(&SimulatedKesto::Impl::setOutputs, outputs);
}

Kes::Result SimulatedLink::runSequence(const OutputSequence& sequence)
{
    return _call(&SimulatedKesto::Impl::runSequence, sequence);
}

Kes::Result SimulatedLink::stopOutputs()
{
    return _call(&SimulatedKesto::Impl::stopOutputs);
}

DeviceTime SimulatedLink::getTime() const
{
    const auto device = _getDevice();
    return device ? device->getTime() : DeviceTime(0);
}

void SimulatedLink::setListener(IKestoLinkListener* listener)
{
    _port->setListener(listener);
}

} // namespace KesDriver
