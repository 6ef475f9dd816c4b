#include <KesDriver/net/detail/StreamConnection.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace KesDriver {

namespace {

/// How often a device hears of its controller when nobody asks it anything.
constexpr std::chrono::milliseconds longestFeedInterval{200};

} // namespace

StreamConnection::StreamConnection(ConnectionNumber number, std::chrono::milliseconds timeout,
                                   bool isInLockstep, std::shared_ptr<ReportQueue> reports)
    : _number(number), _timeout(timeout), _isInLockstep(isInLockstep), _reports(std::move(reports))
{}

StreamConnection::End StreamConnection::getEnd() const
{
    std::lock_guard lock(_mutex);
    return _end;
}

bool StreamConnection::isEstablished() const
{
    std::lock_guard lock(_mutex);
    return _isEstablished && _end == End::None;
}

bool StreamConnection::open(const StreamConnector& connector)
{
    const bool isMade = _stream.open(connector);
    _lastSent = Clock::now();
    _attemptEnd = _lastSent + _timeout;
    const auto start = [this](const char* name, void (StreamConnection::*work)()) {
        return Kes::Worker::tryStart(name, [self = shared_from_this(), work] {
            try {
                ((*self).*work)();
            } catch (...) {
                KesLog::Log::writeError("A link has failed: " + Kes::getCurrentExceptionText());
                self->end(End::Silent);
            }
        });
    };
    auto watcher = isMade ? start("KesLink_Watch", &StreamConnection::_watch) : std::nullopt;
    auto reader = watcher ? start("KesLink_Read", &StreamConnection::_read) : std::nullopt;
    if (watcher)
        _watcher = *std::move(watcher);
    if (reader)
        _reader = *std::move(reader);
    else
        end(End::NoDevice);
    return getEnd() == End::None;
}

void StreamConnection::beginEvents(std::string boot, std::uint64_t last)
{
    std::lock_guard lock(_mutex);
    _boot = std::move(boot);
    _events.begin(last);
    _hasEvents = true;
}

void StreamConnection::beginWatch()
{
    std::lock_guard lock(_mutex);
    _isWatching = true;
    _changed.notify_all();
}

bool StreamConnection::establish()
{
    std::lock_guard lock(_mutex);
    _isEstablished = _end == End::None;
    return _isEstablished;
}

void StreamConnection::end(End reason)
{
    std::lock_guard lock(_mutex);
    if (_end != End::None)
        return;
    _end = reason;
    _stream.cancel();
    _changed.notify_all();
    _answered.notify_all();
    if (_isEstablished && reason != End::Closed)
        _reports->push(_number, ConnectionLost{}, std::numeric_limits<ReportQueue::Run>::max());
}

void StreamConnection::waitForThreads()
{
    _reader.wait();
    _watcher.wait();
}

// Asking

std::optional<Answer> StreamConnection::ask(const std::string& commands, std::size_t queries)
{
    return _ask(commands, queries, Purpose::Call);
}

std::optional<Answer> StreamConnection::askToTakeSequence(const std::string& commands,
                                                          const IsUnwanted& isUnwanted)
{
    // Not for ever: a receiver that waits for the caller must not lock both up.
    constexpr std::chrono::milliseconds longestWait{100};
    _reports->waitUntilHeard(longestWait);
    return _ask(commands, 0, Purpose::Sequence, isUnwanted);
}

std::optional<Answer> StreamConnection::_ask(const std::string& commands, std::size_t queries,
                                             Purpose purpose, const IsUnwanted& isUnwanted)
{
    std::shared_ptr<Question> question;
    {
        const std::lock_guard writing(_writing);
        if (isUnwanted && isUnwanted())
            return std::nullopt;
        question = _send(commands, queries, purpose);
    }
    Lock lock(_mutex);
    _answered.wait(lock, [&] { return _end != End::None || (question && question->answer); });
    return question ? std::move(question->answer) : std::nullopt;
}

/// With the right to write. Null when the connection has ended.
std::shared_ptr<StreamConnection::Question> StreamConnection::_send(const std::string& commands,
                                                                    std::size_t queries, Purpose purpose)
{
    const auto question = std::make_shared<Question>();
    {
        std::lock_guard lock(_mutex);
        if (_end != End::None)
            return nullptr;
        _lastSent = Clock::now();
        const auto deadline = _isEstablished ? _lastSent + _timeout : _attemptEnd;
        *question = {++_lastNumber, purpose, queries, deadline, _run, {}};
        _questions.push_back(question);
        if (deadline < _watchWakes)
            _changed.notify_all();
    }
    if (!_stream.write(writeQuestion(commands, question->number)))
        end(End::Dropped);
    return question;
}

// The watching thread

void StreamConnection::_watch()
{
    const auto interval = std::min(longestFeedInterval, _timeout / 4);
    Lock lock(_mutex);
    while (_end == End::None) {
        const auto now = Clock::now();
        if ((_isWatching && now >= _lastSent + interval) || _events.hasGap())
            _feed(lock);
        if (_isSilent()) {
            lock.unlock();
            end(End::Silent);
            return;
        }
        auto wake = _lastSent + interval;
        if (wake <= now)
            wake = now + interval;
        if (!_questions.empty())
            wake = std::min(wake, _questions.front()->deadline);
        _watchWakes = wake;
        if (_end == End::None)
            _changed.wait_until(lock, wake);
    }
}

/// Never blocks: a device that does not read must be found out here.
void StreamConnection::_feed(Lock& lock)
{
    lock.unlock();
    std::unique_lock writing(_writing, std::try_to_lock);
    const bool canWrite = writing.owns_lock() && _stream.canWrite();
    lock.lock();
    if (!canWrite)
        return;
    std::string commands = ":SYST:BOOT?";
    std::size_t queries = 1;
    auto purpose = Purpose::Watch;
    if (_events.hasGap()) {
        const auto gap = _events.takeGap();
        commands += ";:EVEN:DATA? " + std::to_string(gap.from) + ',' + std::to_string(gap.count);
        purpose = Purpose::Missing;
        queries = 2;
    }
    lock.unlock();
    _send(commands, queries, purpose);
    lock.lock();
}

bool StreamConnection::_isSilent() const
{
    return !_questions.empty() && Clock::now() >= _questions.front()->deadline;
}

} // namespace KesDriver
