// How a link over a stream begins a connection.

#include <KesDriver/net/StreamLink.h>

#include <KesCommon/StringHelper.h>
#include <KesDriver/ConnectionError.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>
#include <KesDriver/net/detail/DeviceOwner.h>
#include <KesDriver/net/detail/ReportQueue.h>
#include <KesDriver/net/detail/StreamConnection.h>

#include <charconv>
#include <limits>
#include <thread>

namespace KesDriver {

namespace {

constexpr const char* protocolVersion = "1.0";

template <typename... Args>
Kes::Result failure(const char* key, const Args&... args)
{
    return ConnectionError::failure(Kes::StringHelper::format(lng::Driver::get(key), args...));
}

std::string getProgram()
{
    const char* name = g_get_prgname();
    return std::string(name ? name : "KesProgram") + '@' + g_get_host_name();
}

std::string shorten(const std::string& text)
{
    constexpr std::size_t longest = 64;
    return Kes::StringHelper::toPlainText(text, longest);
}

/// The number before the point.
std::string getMajor(const std::string& version)
{
    return version.substr(0, version.find('.'));
}

} // namespace

Kes::Result StreamLink::connect(ConnectionNumber& connection)
{
    const auto timeout = _settings.getTimeout();
    Connection made;
    {
        std::lock_guard lock(_mutex);
        if (_connection && _connection->getEnd() == StreamConnection::End::None)
            return Kes::Result::failure(Kes::StringHelper::format(lng::Driver::get("Link.connected"), _name));
        made = std::make_shared<StreamConnection>(++_lastNumber, timeout, _settings.isInLockstep, _reports);
        _connection = made;
        _limits.reset();
    }
    // Before the first report.
    connection = made->getNumber();
    auto result = _open(*made);
    if (result && !made->establish())
        result = _describeEnd(*made);
    if (!result) {
        made->end(StreamConnection::End::Closed);
        connection = 0;
    }
    return result;
}

Kes::Result StreamLink::_open(StreamConnection& connection)
{
    const auto drop = [weak = connection.weak_from_this()] {
        if (const auto untaken = weak.lock())
            untaken->end(StreamConnection::End::Untaken);
    };
    if (!_reports->start(connection.getNumber(), drop) || !connection.open(_settings.connector)) {
        connection.end(StreamConnection::End::NoDevice);
        return _describeEnd(connection);
    }
    auto result = _greet(connection);
    if (result)
        result = _takeControl(connection);
    return result ? _subscribe(connection) : result;
}

/// Nothing but the version before it is known that the rest means what is expected.
Kes::Result StreamLink::_greet(StreamConnection& connection)
{
    std::string version;
    auto result = _ask(connection, ":SYST:PROT?", 1, [&](const Fields& fields) {
        version = shorten(fields[0]);
        return !version.empty();
    });
    if (result && getMajor(version) != getMajor(protocolVersion))
        return failure("Link.otherProtocol", _getName(), version, protocolVersion);
    if (!result)
        return result;
    std::optional<KestoIdentity> identity;
    std::optional<OutputLimits> limits;
    result = _ask(connection, "*IDN?;:SYST:SIM?;:SYST:LIM?", 3, [&](const Fields& fields) {
        identity = ValueText::readIdentity(fields[0]);
        limits = ValueText::readLimits(fields[2]);
        const auto isSimulated = FieldText::readFlag(fields[1]);
        _isSimulated = isSimulated.value_or(false);
        return identity && isSimulated;
    });
    std::lock_guard lock(_mutex);
    if (result)
        _name = identity->identifer.toDisplayString() + " (" + _settings.address + ')';
    _limits = limits;
    return result;
}

/// A connection of this program that has just ended may still be known to the device.
Kes::Result StreamLink::_takeControl(StreamConnection& connection)
{
    constexpr std::chrono::milliseconds betweenTries{1};
    const auto controller = _settings.controller.empty() ? getProgram() : _settings.controller;
    const auto end = std::chrono::steady_clock::now() + _settings.formerEnd;
    while (true) {
        const auto answer = connection.ask(":SYST:CONT:TAKE " + FieldText::quote(controller), 0);
        if (!answer)
            return _describeEnd(connection);
        if (answer->code == 0)
            return true;
        if (answer->code != static_cast<int>(RefusalCode::CommandProtected))
            return _describeRefusal(connection, *answer);
        std::optional<DeviceOwner> owner;
        auto result = _ask(connection, ":SYST:CONT:OWN?", 1, [&](const Fields& fields) {
            owner = readOwner(fields[0]);
            return owner.has_value();
        });
        if (!result)
            return result;
        const bool mayEnd = owner->name == controller || owner->name.empty();
        if (!mayEnd || std::chrono::steady_clock::now() >= end)
            return owner->name.empty()
                       ? failure("Link.inUse", _getName())
                       : failure("Link.inUseBy", _getName(), shorten(owner->name), shorten(owner->address));
        std::this_thread::sleep_for(betweenTries);
    }
}

/// What has happened before is in the answers to come.
Kes::Result StreamLink::_subscribe(StreamConnection& connection)
{
    std::string boot;
    std::optional<std::size_t> last;
    auto result = _ask(connection, ":SYST:WATC 1;:SYST:BOOT?;:EVEN:LAST?", 2, [&](const Fields& fields) {
        boot = fields[0];
        last = FieldText::readCount(fields[1], std::numeric_limits<std::size_t>::max() - 1);
        return !boot.empty() && last;
    });
    if (!result)
        return result;
    connection.beginEvents(boot, *last);
    connection.beginWatch();
    return _ask(connection, ":EVEN:SUBS ON," + std::to_string(*last + 1) +
                                (_settings.isInLockstep ? ";:SIM:LOCK ON" : ""));
}

} // namespace KesDriver
