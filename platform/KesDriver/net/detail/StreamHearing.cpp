// The thread of a connection that hears what the device says.

#include <KesDriver/net/detail/StreamConnection.h>

#include <array>
#include <type_traits>
#include <utility>

namespace KesDriver {

namespace {

/// Answers may have 1 MiB; every query adds its separator, and the error and the number stand behind them.
constexpr std::size_t longestLine = (1U << 20U) + (1U << 16U);

} // namespace

void StreamConnection::_read()
{
    LineBuffer lines(longestLine);
    std::array<char, 65536> bytes;
    while (getEnd() == End::None) {
        const auto count = _stream.read(bytes.data(), bytes.size());
        if (count == 0)
            end(End::Dropped);
        lines.append({bytes.data(), count});
        _readLines(lines);
        if (_isInLockstep)
            _acknowledgeWhenHeard();
    }
    // Who is writing is interrupted, too.
    const std::lock_guard writing(_writing);
    _stream.close();
}

void StreamConnection::_readLines(LineBuffer& lines)
{
    std::string line;
    while (getEnd() == End::None && lines.take(line))
        _hear(line);
    if (lines.isBroken())
        end(End::Nonsense);
}

void StreamConnection::_hear(const std::string& line)
{
    if (!line.starts_with('!')) {
        _hearAnswer(line);
        return;
    }
    std::vector<EventOrder::Record> due;
    {
        std::lock_guard lock(_mutex);
        if (!_hasEvents || _events.isBroken())
            return;
        due = _events.take(std::string_view(line).substr(1));
        // The watch asks for what is missing.
        if (_events.hasGap())
            _changed.notify_all();
    }
    _hearEvents(due);
}

void StreamConnection::_hearAnswer(const std::string& line)
{
    std::vector<EventOrder::Record> due;
    bool isRestarted = false;
    {
        Lock lock(_mutex);
        const auto question = _questions.empty() ? nullptr : _questions.front();
        auto answer = question ? readAnswer(line, question->number, question->queries) : std::nullopt;
        if (!answer) {
            lock.unlock();
            end(End::Nonsense);
            return;
        }
        _questions.pop_front();
        question->answer = std::move(answer);
        isRestarted = _isOtherBoot(*question);
        if (!isRestarted)
            due = _use(*question);
    }
    _answered.notify_all();
    if (isRestarted)
        end(End::Restarted);
    _hearEvents(due);
}

/// With the lock. Not before the first answer has said which one it is.
bool StreamConnection::_isOtherBoot(const Question& question) const
{
    const bool tells = question.purpose == Purpose::Watch || question.purpose == Purpose::Missing;
    return tells && _hasEvents && question.answer->code == 0 && question.answer->fields.front() != _boot;
}

/// What an answer means for the events, seen from where it stands between them. With the lock; returns the
/// events that are due.
std::vector<EventOrder::Record> StreamConnection::_use(const Question& question)
{
    const bool isGood = question.answer->code == 0;
    if (question.purpose == Purpose::Sequence && isGood) {
        _oldestRun = question.runBefore + 1;
        _reports->forgetStepsBefore(_oldestRun);
    }
    if (question.purpose != Purpose::Missing)
        return {};
    if (isGood)
        return _events.fill(question.answer->fields.back());
    _events.setBroken();
    return {};
}

void StreamConnection::_hearEvents(const std::vector<EventOrder::Record>& events)
{
    for (const auto& event : events)
        _report(event);
    std::lock_guard lock(_mutex);
    if (_events.isBroken() && !std::exchange(_hasToldNonsense, true))
        _reportNonsense();
}

void StreamConnection::_report(const EventOrder::Record& event)
{
    if (std::holds_alternative<ValueText::ReleaseRecord>(event.content)) {
        end(End::Released);
        return;
    }
    std::lock_guard lock(_mutex);
    if (_end != End::None)
        return;
    auto report = std::visit(
        [](const auto& content) -> Report {
            if constexpr (std::is_same_v<std::decay_t<decltype(content)>, ValueText::ReleaseRecord>)
                return ConnectionLost{};
            else
                return content;
        },
        event.content);
    if (const auto* step = std::get_if<StepEvent>(&report); step && step->step == 0)
        ++_run;
    if (_run >= _oldestRun || removeStep(report))
        _reports->push(_number, std::move(report), _run);
}

/// One for all events that have come together: the device continues only when the last one is known.
void StreamConnection::_acknowledgeWhenHeard()
{
    std::uint64_t last = 0;
    {
        std::lock_guard lock(_mutex);
        last = _hasEvents && !_events.isBroken() ? _events.getLast() : 0;
    }
    if (last <= _lastAcknowledged)
        return;
    _lastAcknowledged = last;
    _reports->callWhenHeard(_number, [self = shared_from_this(), last] { self->_acknowledge(last); });
}

/// Without an answer: the device is waiting.
void StreamConnection::_acknowledge(std::uint64_t event)
{
    const std::lock_guard writing(_writing);
    if (getEnd() == End::None && !_stream.write(":EVEN:ACKN " + std::to_string(event) + '\n'))
        end(End::Dropped);
}

/// Whoever hears it sees that the device cannot be believed: no device has an input 0 or a time before it was
/// switched on.
void StreamConnection::_reportNonsense()
{
    if (_end == End::None)
        _reports->push(_number, InputEvent{0, false, DeviceTime(-1)}, _run);
}

} // namespace KesDriver
