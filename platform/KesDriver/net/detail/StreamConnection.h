#pragma once

#include <KesCommon/Worker.h>
#include <KesDriver/Report.h>
#include <KesDriver/net/LineBuffer.h>
#include <KesDriver/net/StreamConnector.h>
#include <KesDriver/net/detail/Answer.h>
#include <KesDriver/net/detail/ByteStream.h>
#include <KesDriver/net/detail/EventOrder.h>
#include <KesDriver/net/detail/ReportQueue.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace KesDriver {

/// One connection of a link over a stream, from the attempt to its end. Shared by the link and its two
/// threads: one reads, the other one sees to it that the device hears of its controller and answers. Any
/// thread.
class StreamConnection : public std::enable_shared_from_this<StreamConnection> {
public:
    enum class End {
        None,
        /// By the link.
        Closed,
        NoDevice,
        /// No answer within the time-out.
        Silent,
        /// By the device.
        Dropped,
        /// What has come is not what was asked for.
        Nonsense,
        /// The device has another controller or none.
        Released,
        /// A receiver has not taken a report.
        Untaken,
        /// It is not the same start of the device any more: its clock and its events have restarted.
        Restarted,
    };

    /// In lockstep the device gets a message about the events that have been heard.
    StreamConnection(ConnectionNumber number, std::chrono::milliseconds timeout, bool isInLockstep,
                     std::shared_ptr<ReportQueue> reports);

    ConnectionNumber getNumber() const { return _number; }
    End getEnd() const;
    /// Whether it has come about and not ended.
    bool isEstablished() const;

    /// Makes the stream and starts the threads. Once.
    bool open(const StreamConnector& connector);
    /// Events of this start of the device with larger numbers than this are reported from now on.
    void beginEvents(std::string boot, std::uint64_t last);
    /// From now on the device hears of its controller again and again.
    void beginWatch();
    /// From now on a loss is reported. False when the connection has ended.
    bool establish();

    using IsUnwanted = std::function<bool()>;

    /// Asks and waits for the answer, the time-out at most. Nothing when the connection ends before; it has
    /// ended then. `commands` begin with a colon or a star and hold so many queries.
    std::optional<Answer> ask(const std::string& commands, std::size_t queries);
    /// The same for what gives the device a new sequence: before, all reports so far have been heard if that
    /// takes no longer than 100 ms; afterwards no step of an earlier sequence is reported any more. Nothing
    /// is asked when it is unwanted at the moment of sending: what is asked after that comes behind it.
    std::optional<Answer> askToTakeSequence(const std::string& commands, const IsUnwanted& isUnwanted);

    /// Ends it, the first time for this reason. Waits for nobody.
    void end(End reason);
    /// After its end, when nobody opens it any more: returns when its threads have ended, which is soon. Not
    /// on one of them.
    void waitForThreads();

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;
    enum class Purpose { Call, Sequence, Watch, Missing };

    struct Question {
        QuestionNumber number = 0;
        Purpose purpose = Purpose::Call;
        std::size_t queries = 0;
        Clock::time_point deadline;
        /// Events of later runs belong to the sequence that is taken with this question.
        ReportQueue::Run runBefore = 0;
        std::optional<Answer> answer;
    };

    std::optional<Answer> _ask(const std::string& commands, std::size_t queries, Purpose purpose,
                               const IsUnwanted& isUnwanted = nullptr);

    void _read();
    void _readLines(LineBuffer& lines);
    void _hear(const std::string& line);
    void _hearAnswer(const std::string& line);
    bool _isOtherBoot(const Question& question) const;
    std::vector<EventOrder::Record> _use(const Question& question);
    void _hearEvents(const std::vector<EventOrder::Record>& events);
    void _report(const EventOrder::Record& event);
    void _reportNonsense();
    void _acknowledgeWhenHeard();
    void _acknowledge(std::uint64_t event);

    void _watch();
    void _feed(Lock& lock);
    bool _isSilent() const;
    std::shared_ptr<Question> _send(const std::string& commands, std::size_t queries, Purpose purpose);

    const ConnectionNumber _number;
    const std::chrono::milliseconds _timeout;
    const bool _isInLockstep;
    const std::shared_ptr<ReportQueue> _reports;
    ByteStream _stream;

    /// Held while a line is written; before the other one.
    std::mutex _writing;
    mutable std::mutex _mutex;
    /// What the watch waits for: the end, a gap between the events, a question whose time ends before it
    /// wakes.
    std::condition_variable _changed;
    Clock::time_point _watchWakes;
    /// What those who ask wait for: an answer, the end.
    std::condition_variable _answered;
    End _end = End::None;
    bool _isEstablished = false;
    bool _isWatching = false;
    QuestionNumber _lastNumber = 0;
    std::deque<std::shared_ptr<Question>> _questions;
    Clock::time_point _lastSent;
    /// When it has to be established at the latest.
    Clock::time_point _attemptEnd;
    /// Which start of the device it is.
    std::string _boot;
    EventOrder _events;
    bool _hasEvents = false;
    bool _hasToldNonsense = false;
    /// The last event whose acknowledgement is on its way. The reading thread's.
    std::uint64_t _lastAcknowledged = 0;
    ReportQueue::Run _run = 0;
    ReportQueue::Run _oldestRun = 0;

    Kes::Worker _reader;
    Kes::Worker _watcher;
};

} // namespace KesDriver
