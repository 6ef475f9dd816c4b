#include <KesDriver/simulated/serving/detail/DeviceControl.h>

#include <KesDriver/Refusal.h>
#include <KesDriver/scpi/Error.h>
#include <KesDriver/simulated/serving/detail/EventLog.h>

#include <utility>

namespace KesDriver {

namespace {

[[noreturn]] void protect(const DeviceControl::Owner& owner)
{
    const auto who = owner.session == 0 ? std::string("nobody has control")
                                        : owner.name + " at " + owner.address + " has control";
    throw Scpi::Error(Scpi::ErrorCode::CommandProtected, who);
}

Scpi::Error toError(const Kes::Result& refusal)
{
    const auto code = getRefusalCode(refusal).value_or(RefusalCode::SettingsConflict);
    return Scpi::Error(static_cast<Scpi::ErrorCode>(code),
                       refusal.getError() ? refusal.getError()->getMessage() : std::string());
}

} // namespace

DeviceControl::DeviceControl(std::shared_ptr<SimulatedHost> host, EventLog& events)
    : _host(std::move(host)), _events(events)
{}

void DeviceControl::setLost(Lost lost)
{
    std::lock_guard lock(_mutex);
    _lost = std::move(lost);
}

void DeviceControl::take(const Owner& owner)
{
    std::lock_guard lock(_mutex);
    if (_owner.session != 0 && _owner.session != owner.session)
        protect(_owner);
    if (_owner.session == 0) {
        const auto number = ++_lastNumber;
        auto connection = std::make_shared<const std::function<void()>>([weak = weak_from_this(), number] {
            if (const auto control = weak.lock())
                control->_noteLoss(number);
        });
        if (!_host->connect(connection))
            throw Scpi::Error(Scpi::ErrorCode::CommandProtected, "the device has been switched off");
        _connection = std::move(connection);
    }
    _owner = owner;
}

void DeviceControl::release(SessionNumber session, const std::string& reason)
{
    std::lock_guard lock(_mutex);
    if (_owner.session == 0 || _owner.session != session)
        return;
    _host->disconnect(_connection);
    _end(reason);
}

/// The connection has ended.
void DeviceControl::_end(const std::string& reason)
{
    _setLockstep(false);
    _host->use([&](SimulatedDevice& device) {
        _events.add(device.getLastTime(), ValueText::ReleaseRecord{reason});
    });
    _connection.reset();
    _owner = {};
}

void DeviceControl::_noteLoss(std::uint64_t connection)
{
    SessionNumber session = 0;
    Lost lost;
    {
        std::lock_guard lock(_mutex);
        if (!_connection || _lastNumber != connection)
            return;
        session = _owner.session;
        _end("the device has dropped " + _owner.name);
        lost = _lost;
    }
    if (lost)
        lost(session);
}

void DeviceControl::setLockstep(SessionNumber session, bool isOn)
{
    std::lock_guard lock(_mutex);
    _check(session);
    _setLockstep(isOn);
}

void DeviceControl::_setLockstep(bool isOn)
{
    _lockstep = isOn;
    if (!isOn)
        _host->goOn([] { return true; });
}

DeviceControl::Owner DeviceControl::getOwner() const
{
    std::lock_guard lock(_mutex);
    return _owner;
}

void DeviceControl::check(SessionNumber session) const
{
    std::lock_guard lock(_mutex);
    _check(session);
}

void DeviceControl::_check(SessionNumber session) const
{
    if (_owner.session != session)
        protect(_owner);
}

SimulatedHost::Connection DeviceControl::_getConnection(SessionNumber session) const
{
    std::lock_guard lock(_mutex);
    _check(session);
    return _connection;
}

void DeviceControl::call(SessionNumber session, const SimulatedHost::Request& request)
{
    const auto result = _host->call(_getConnection(session), request);
    if (!result)
        throw Scpi::Error(Scpi::ErrorCode::CommandProtected, "control has been lost");
    if (!*result)
        throw toError(*result);
}

} // namespace KesDriver
