#include <KesDriver/net/StreamLink.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/ConnectionError.h>
#include <KesDriver/DriverText.h>
#include <KesDriver/OutputCheck.h>
#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>
#include <KesDriver/net/detail/ReportQueue.h>
#include <KesDriver/net/detail/StreamConnection.h>
#include <KesDriver/scpi/Block.h>

#include <glibmm/ustring.h>

#include <utility>

namespace KesDriver {

namespace {

using End = StreamConnection::End;

/// What a device reads in about a millisecond: a stop waits for no more. Each part takes a round trip.
constexpr std::size_t bytesAtATime = 64U << 10U;

/// What the program itself says for a refusal; null where the device's words say more.
const char* getStateText(RefusalCode code)
{
    switch (code) {
    case RefusalCode::OutputsOff:
        return "State.outputOff";
    case RefusalCode::SequenceRuns:
        return "State.sequenceRuns";
    case RefusalCode::SequenceWaits:
        return "State.sequenceArmed";
    case RefusalCode::NothingWaits:
        return "State.notArmed";
    case RefusalCode::StartPassed:
        return "State.startPassed";
    default:
        return nullptr;
    }
}

const char* getEndText(End end)
{
    switch (end) {
    case End::NoDevice:
        return "Link.noDevice";
    case End::Silent:
        return "Link.noAnswer";
    case End::Dropped:
        return "Link.dropped";
    case End::Nonsense:
        return "Link.nonsense";
    case End::Released:
        return "Link.released";
    case End::Restarted:
        return "Link.restarted";
    default:
        return "Link.notConnected";
    }
}

template <typename Value>
bool assign(std::optional<Value> value, Value& target)
{
    if (value)
        target = *std::move(value);
    return value.has_value();
}

} // namespace

StreamLink::StreamLink(Settings settings)
    : _settings(std::move(settings)),
      _reports(std::make_shared<ReportQueue>()),
      _isSimulated(_settings.isInLockstep),
      _name(KestoIdentifer().getTypeName() + ' ' + _settings.address)
{}

StreamLink::~StreamLink()
{
    StreamLink::disconnect();
    _reports->stop();
    if (const auto connection = _getConnection())
        connection->waitForThreads();
}

void StreamLink::setReceiver(std::weak_ptr<IReportReceiver> receiver)
{
    _reports->setReceiver(std::move(receiver));
}

void StreamLink::disconnect()
{
    if (const auto connection = _getConnection()) {
        connection->end(End::Closed);
        _reports->drop(connection->getNumber());
    }
}

StreamLink::Connection StreamLink::_getConnection() const
{
    std::lock_guard lock(_mutex);
    return _connection;
}

std::optional<OutputLimits> StreamLink::_getLimits() const
{
    std::lock_guard lock(_mutex);
    return _limits;
}

std::string StreamLink::_getName() const
{
    std::lock_guard lock(_mutex);
    return _name;
}

// Asking

Kes::Result StreamLink::_call(const std::string& commands)
{
    return _call(commands, 0, nullptr);
}

Kes::Result StreamLink::_call(const std::string& commands, std::size_t queries, const Read& read)
{
    const auto connection = _getConnection();
    if (!connection || !connection->isEstablished())
        return _fail("Link.notConnected");
    return _ask(*connection, commands, queries, read);
}

Kes::Result StreamLink::_ask(StreamConnection& connection, const std::string& commands, std::size_t queries,
                             const Read& read) const
{
    return _judge(connection, connection.ask(commands, queries), read);
}

Kes::Result StreamLink::_judge(StreamConnection& connection, const std::optional<Answer>& answer,
                               const Read& read) const
{
    if (!answer)
        return _describeEnd(connection);
    if (answer->code != 0)
        return _describeRefusal(connection, *answer);
    if (!read || read(answer->fields))
        return true;
    connection.end(End::Nonsense);
    return _describeEnd(connection);
}

Kes::Result StreamLink::_fail(const char* key) const
{
    return ConnectionError::failure(Kes::StringHelper::format(lng::Driver::get(key), _getName()));
}

Kes::Result StreamLink::_refuse(RefusalCode code, const std::string& reason) const
{
    return Refusal::failure(code, _getName() + ": " + reason);
}

Kes::Result StreamLink::_refuse(const Kes::Result& reason) const
{
    return _refuse(getRefusalCode(reason).value_or(RefusalCode::OutOfRange), reason.getError()->getMessage());
}

Kes::Result StreamLink::_describeEnd(const StreamConnection& connection) const
{
    return _fail(getEndText(connection.getEnd()));
}

Kes::Result StreamLink::_describeRefusal(StreamConnection& connection, const Answer& answer) const
{
    constexpr std::size_t longestText = 300;
    const auto code = static_cast<RefusalCode>(answer.code);
    if (code == RefusalCode::CommandProtected) {
        connection.end(End::Released);
        return _describeEnd(connection);
    }
    if (const char* key = getStateText(code))
        return _refuse(code, lng::Driver::get(key));
    const auto shown = Glib::ustring(answer.text).substr(0, longestText).raw();
    if (code != RefusalCode::Fault)
        return _refuse(code, shown);
    const auto faults = connection.ask(":SYST:FAUL?", 1);
    if (!faults)
        return _describeEnd(connection);
    const auto avary = faults->code == 0 ? ValueText::readFaults(faults->fields[0]) : std::nullopt;
    const auto text = avary ? describeFaults(*avary) : shown;
    return _refuse(code, Kes::StringHelper::format(lng::Driver::get("State.fault"), text));
}

Kes::Result StreamLink::identify(KestoIdentity& identity)
{
    return _call("*IDN?;:CAL:DATE?", 2, [&](const Fields& fields) {
        auto date = FieldText::unquote(fields[1]);
        if (!date || !assign(ValueText::readIdentity(fields[0]), identity))
            return false;
        identity.calibrationDate = *std::move(date);
        return true;
    });
}

Kes::Result StreamLink::readState(KestoState& state)
{
    return _call(":SYST:STAT?;:SYST:FAUL?", 2, [&](const Fields& fields) {
        auto status = ValueText::readStatus(fields[0]);
        const auto faults = ValueText::readFaults(fields[1]);
        if (!status || !faults)
            return false;
        state = std::move(status->state);
        state.error = describeFaults(*faults);
        return true;
    });
}

Kes::Result StreamLink::readLimits(OutputLimits& limits)
{
    return _call(":SYST:LIM?", 1,
                 [&](const Fields& fields) { return assign(ValueText::readLimits(fields[0]), limits); });
}

Kes::Result StreamLink::readTime(DeviceTime& time)
{
    return _call(":SYST:CLOC?", 1, [&](const Fields& fields) {
        const auto value = ValueText::readMicroseconds(fields[0], true);
        time = DeviceTime(value.value_or(0));
        return value.has_value();
    });
}

Kes::Result StreamLink::readClock(ClockReading& reading)
{
    return _call(":SYST:CLOC:COMM?", 1, [&](const Fields& fields) {
        const auto parts = FieldText::split(fields[0], ',', 2);
        if (!parts || parts->size() != 2)
            return false;
        const auto device = ValueText::readMicroseconds(parts->front(), true);
        const auto common = ValueText::readMicroseconds(parts->back(), true);
        reading = {DeviceTime(device.value_or(0)), CommonTime(common.value_or(0))};
        return device && common;
    });
}

// Outputs

Kes::Result StreamLink::setAuxDC(bool enable, double volts)
{
    if (const auto result = checkAuxDC(volts); !result)
        return _refuse(result);
    return _call(std::string(":OUTP:AUX ") + (enable ? "ON," : "OFF,") + Kes::NumberText::write(volts));
}

Kes::Result StreamLink::startWorkingMode()
{
    return _call(":OUTP ON");
}

Kes::Result StreamLink::stopWorkingMode()
{
    return _call(":OUTP OFF");
}

Kes::Result StreamLink::setOutputs(const OutputState& outputs)
{
    const auto limits = _getLimits();
    if (const auto result = limits ? checkOutputs(outputs, *limits) : Kes::Result(true); !result)
        return _refuse(result);
    return _call(":APPL " + ValueText::write(outputs));
}

Kes::Result StreamLink::stopOutputs()
{
    ++_stops;
    return _call(":ABOR");
}

Kes::Result StreamLink::runSequence(const OutputSequence& sequence)
{
    return _sendSequence(sequence, ":INIT");
}

Kes::Result StreamLink::armSequence(const OutputSequence& sequence)
{
    return _sendSequence(sequence, ":SEQ:ARM");
}

/// The start is a question of its own: a device that refuses the steps must not start what it had before. So
/// are the parts of a long sequence, or a stop would wait until the device has read all of it.
Kes::Result StreamLink::_sendSequence(const OutputSequence& sequence, const char* start)
{
    const auto connection = _getConnection();
    if (!connection || !connection->isEstablished())
        return _fail("Link.notConnected");
    const auto isStopped = [this, stops = _stops.load()] { return _stops != stops; };
    const auto limits = _getLimits();
    if (const auto result = limits ? checkSequence(sequence, *limits) : Kes::Result(true); !result)
        return _refuse(result);
    const auto parts = ValueText::writeInParts(sequence, bytesAtATime);
    const std::lock_guard sending(_sending);
    const char* header = ":SEQ:CLE;:SEQ:DATA ";
    for (const auto& part : parts) {
        if (auto result = _ask(*connection, header + Scpi::writeBlock(part)); !result)
            return result;
        if (isStopped())
            return _refuseStopped();
        header = ":SEQ:DATA:APP ";
    }
    const auto answer = connection->askToTakeSequence(start, isStopped);
    if (!answer && isStopped() && connection->isEstablished())
        return _refuseStopped();
    return _judge(*connection, answer, nullptr);
}

Kes::Result StreamLink::_refuseStopped() const
{
    return Kes::Result::failure(
        Kes::StringHelper::format(lng::Driver::get("Link.stoppedBefore"), _getName()));
}

Kes::Result StreamLink::startArmed(const StartMoment& moment)
{
    if (moment.at)
        return _call(":TRIG:AT " + std::to_string(moment.at->count()));
    const auto limits = _getLimits();
    if (!moment.input)
        return _call(":TRIG");
    if (const auto result = limits ? checkInput(*moment.input, *limits) : Kes::Result(true); !result)
        return _refuse(result);
    return _call(":TRIG:INP " + std::to_string(*moment.input));
}

} // namespace KesDriver
