#include <KesDriver/simulated/detail/DirectLink.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/ConnectionError.h>
#include <KesDriver/DriverText.h>

#include <utility>

namespace KesDriver {

DirectLink::DirectLink(Find find, std::string name) : _find(std::move(find)), _name(std::move(name)) {}

DirectLink::~DirectLink()
{
    DirectLink::disconnect();
}

void DirectLink::setReceiver(std::weak_ptr<IReportReceiver> receiver)
{
    _receiver->set(std::move(receiver));
}

Kes::Result DirectLink::connect(ConnectionNumber& connection)
{
    const auto device = _find();
    if (!device)
        return ConnectionError::failure(Kes::StringHelper::format(lng::Driver::get("Link.noDevice"), _name));
    const auto host = device->_host;
    SimulatedHost::Connection made;
    {
        std::lock_guard lock(_mutex);
        if (_current.connection && !_current.connection->hasEnded())
            return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Link.connected"), _name));
        made = std::make_shared<SimulatedConnection>(++_lastNumber, _name, _receiver);
        _current = {host, made};
    }
    // Before the first report.
    connection = made->number;
    auto result = host->connect(made);
    if (!result)
        connection = 0;
    return result;
}

void DirectLink::disconnect()
{
    if (const auto [host, connection] = _getCurrent(); host)
        host->disconnect(connection);
}

DirectLink::Current DirectLink::_getCurrent() const
{
    std::lock_guard lock(_mutex);
    return _current;
}

Kes::Result DirectLink::_call(const SimulatedHost::Request& request, Call call) const
{
    const auto [host, connection] = _getCurrent();
    if (host)
        return ((*host).*call)(connection, request);
    return ConnectionError::failure(Kes::StringHelper::format(lng::Driver::get("Link.notConnected"), _name));
}

Kes::Result DirectLink::identify(KestoIdentity& identity)
{
    return _call([&](SimulatedDevice& device) { return device.identify(identity); });
}

Kes::Result DirectLink::readState(KestoState& state)
{
    return _call([&](SimulatedDevice& device) { return device.readState(state); });
}

Kes::Result DirectLink::readLimits(OutputLimits& limits)
{
    return _call([&](SimulatedDevice& device) { return device.readLimits(limits); });
}

Kes::Result DirectLink::readTime(DeviceTime& time)
{
    return _call([&](SimulatedDevice& device) { return device.readTime(time); });
}

Kes::Result DirectLink::setAuxDC(bool enable, double volts)
{
    return _call([&](SimulatedDevice& device) { return device.setAuxDC(enable, volts); });
}

Kes::Result DirectLink::startWorkingMode()
{
    return _call([](SimulatedDevice& device) { return device.startWorkingMode(); });
}

Kes::Result DirectLink::stopWorkingMode()
{
    return _call([](SimulatedDevice& device) { return device.stopWorkingMode(); });
}

Kes::Result DirectLink::setOutputs(const OutputState& outputs)
{
    return _call([&](SimulatedDevice& device) { return device.setOutputs(outputs); });
}

Kes::Result DirectLink::runSequence(const OutputSequence& sequence)
{
    return _call([&](SimulatedDevice& device) { return device.runSequence(sequence); },
                 &SimulatedHost::callAfterReports);
}

Kes::Result DirectLink::stopOutputs()
{
    return _call([](SimulatedDevice& device) { return device.stopOutputs(); });
}

Kes::Result DirectLink::armSequence(const OutputSequence& sequence)
{
    return _call([&](SimulatedDevice& device) { return device.armSequence(sequence); },
                 &SimulatedHost::callAfterReports);
}

Kes::Result DirectLink::startArmed(const StartMoment& moment)
{
    return _call([&](SimulatedDevice& device) { return device.startArmed(moment); });
}

Kes::Result DirectLink::readClock(ClockReading& reading)
{
    return _call([&](SimulatedDevice& device) { return device.readClock(reading); });
}

} // namespace KesDriver
