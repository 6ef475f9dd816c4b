#include <KesDriver/simulated/detail/SimulatedLink.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/ConnectionError.h>
#include <KesDriver/DriverText.h>

#include <utility>

namespace KesDriver {

SimulatedLink::SimulatedLink(Find find, std::string name) : _find(std::move(find)), _name(std::move(name)) {}

SimulatedLink::~SimulatedLink()
{
    SimulatedLink::disconnect();
}

void SimulatedLink::setReceiver(std::weak_ptr<IReportReceiver> receiver)
{
    _receiver->set(std::move(receiver));
}

Kes::Result SimulatedLink::connect(ConnectionNumber& connection)
{
    const auto host = _find();
    if (!host)
        return ConnectionError::failure(Kes::StringHelper::format(lng::Driver::get("Link.noDevice"), _name));
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

void SimulatedLink::disconnect()
{
    if (const auto [host, connection] = _getCurrent(); host)
        host->disconnect(connection);
}

SimulatedLink::Current SimulatedLink::_getCurrent() const
{
    std::lock_guard lock(_mutex);
    return _current;
}

Kes::Result SimulatedLink::_call(const SimulatedHost::Request& request, Call call) const
{
    const auto [host, connection] = _getCurrent();
    if (host)
        return ((*host).*call)(connection, request);
    return ConnectionError::failure(Kes::StringHelper::format(lng::Driver::get("Link.notConnected"), _name));
}

Kes::Result SimulatedLink::identify(KestoIdentity& identity)
{
    return _call([&](SimulatedDevice& device) { return device.identify(identity); });
}

Kes::Result SimulatedLink::readState(KestoState& state)
{
    return _call([&](SimulatedDevice& device) { return device.readState(state); });
}

Kes::Result SimulatedLink::readLimits(OutputLimits& limits)
{
    return _call([&](SimulatedDevice& device) { return device.readLimits(limits); });
}

Kes::Result SimulatedLink::readTime(DeviceTime& time)
{
    return _call([&](SimulatedDevice& device) { return device.readTime(time); });
}

Kes::Result SimulatedLink::setAuxDC(bool enable, double volts)
{
    return _call([&](SimulatedDevice& device) { return device.setAuxDC(enable, volts); });
}

Kes::Result SimulatedLink::startWorkingMode()
{
    return _call([](SimulatedDevice& device) { return device.startWorkingMode(); });
}

Kes::Result SimulatedLink::stopWorkingMode()
{
    return _call([](SimulatedDevice& device) { return device.stopWorkingMode(); });
}

Kes::Result SimulatedLink::setOutputs(const OutputState& outputs)
{
    return _call([&](SimulatedDevice& device) { return device.setOutputs(outputs); });
}

Kes::Result SimulatedLink::runSequence(const OutputSequence& sequence)
{
    return _call([&](SimulatedDevice& device) { return device.runSequence(sequence); },
                 &SimulatedHost::callAfterReports);
}

Kes::Result SimulatedLink::stopOutputs()
{
    return _call([](SimulatedDevice& device) { return device.stopOutputs(); });
}

Kes::Result SimulatedLink::armSequence(const OutputSequence& sequence)
{
    return _call([&](SimulatedDevice& device) { return device.armSequence(sequence); },
                 &SimulatedHost::callAfterReports);
}

Kes::Result SimulatedLink::startArmed(const StartMoment& moment)
{
    return _call([&](SimulatedDevice& device) { return device.startArmed(moment); });
}

Kes::Result SimulatedLink::readClock(ClockReading& reading)
{
    return _call([&](SimulatedDevice& device) { return device.readClock(reading); });
}

} // namespace KesDriver
