#pragma once

#include <KesCommon/Log.h>
#include <KesCommon/WaitCondition.h>
#include <KesDevice/Kesto.h>
#include <KesDevice/detail/DeviceStateMachine.h>
#include <KesDevice/detail/EventFilter.h>
#include <KesDevice/detail/KnownFault.h>
#include <KesDevice/detail/SequenceEnds.h>

#include <memory>
#include <optional>
#include <vector>

namespace KesDevice {

/// One attempt to connect, for whoever waits for its result.
struct Kesto::Attempt {
    bool isOver = false;
    Kes::Result result = false;
    /// What the device has reported meanwhile that makes the attempt fail.
    std::string failure;
    /// A fault that it has reported since it was asked for its state.
    std::optional<KesDriver::KesAvary> fault;
};

/// What is known of a device and of its connection. Under the mutex of `DeviceStateMachine`.
struct Kesto::Fields {
    DeviceStateMachine machine;
    /// The one whose reports count; 0 while there is none.
    KesDriver::ConnectionNumber connection = 0;
    bool isCurrent(KesDriver::ConnectionNumber number) const { return number != 0 && number == connection; }
    EventFilter filter;
    SequenceEnds ends;
    KnownFault knownFault;
    KesDriver::KestoIdentity identity;
    KesDriver::OutputLimits limits;
    Kes::Nullable<std::string> emittedError;

    std::shared_ptr<Attempt> attempt;
    /// Threads that are just ending the link's connection. No attempt begins meanwhile: its new connection
    /// would be the one that ends.
    unsigned endings = 0;
    /// An attempt or an ending is over, or the end of a sequence has been reported.
    Kes::WaitCondition changed;

    /// Calls that switch the amplifiers off: those under way, and how many have begun so far. Whoever is
    /// switching them on meanwhile cannot know which of the two the device has done last.
    unsigned stopsPending = 0;
    unsigned stopsBegun = 0;
    /// On this connection the last order was to switch the amplifiers on.
    bool isSwitchedOn = false;

    /// What is to be reported to the user: by the threads that have found it out, after they have switched
    /// off what has to be, or by operations under way in their results.
    std::vector<News> untold;
    unsigned tellersPending = 0;
    unsigned resultsPending = 0;

    /// In the same step as the change of the state: an operation that finds the new state and reports it has
    /// reported this.
    template <typename Content>
    void announce(Content news)
    {
        untold.emplace_back(std::move(news));
        ++tellersPending;
    }
    /// A result has reported what has happened to the device so far.
    void setTold()
    {
        untold.clear();
        // The device reports a fault in its own time; it may have become known by asking.
        if (machine.getState() == DeviceState::Faulty && !knownFault.hasRecord())
            knownFault.expectRecord(machine.getReason(), KnownFault::Time::clock::now());
    }
    /// Nothing as long as another thread will report it.
    std::vector<News> takeUntold()
    {
        return tellersPending > 0 || resultsPending > 0 ? std::vector<News>() : std::exchange(untold, {});
    }

    /// The connection in use ends, whatever the reason: a new epoch begins. The end of the sequence that was
    /// running or armed, if one was.
    std::optional<KesDriver::SequenceEvent> endConnection()
    {
        machine.turnEpoch();
        connection = 0;
        const bool isEndUntold = ends.abandon();
        changed.notifyAll();
        isSwitchedOn = false;
        if (!isEndUntold)
            return std::nullopt;
        return KesDriver::SequenceEvent{false, filter.getLastTime()};
    }

    /// Counts one thing of these under way for its scope, and reports its end to those who wait for it. The
    /// count has been raised in the step in which it was decided.
    class UnderWay {
    public:
        UnderWay(Fields& fields, unsigned& count) : _fields(fields), _count(count) {}
        ~UnderWay()
        {
            std::lock_guard lock(DeviceStateMachine::getMutex());
            --_count;
            _fields.changed.notifyAll();
        }
        UnderWay(const UnderWay&) = delete;
        UnderWay& operator=(const UnderWay&) = delete;

    private:
        Fields& _fields;
        unsigned& _count;
    };

    /// Whether a listener has thrown instead of taking a report, and what.
    bool isReportRefused = false;
    std::string refusal;

    bool isRetired = false;
    std::weak_ptr<FaultStopper> faultStopper;
};

/// While one lives, what goes wrong with the device is reported by the result of the operation that holds it:
/// one cause, one text. What the result does not report is reported at its end.
class Kesto::ToldByResult {
public:
    explicit ToldByResult(std::shared_ptr<Kesto> kesto);
    ~ToldByResult();
    ToldByResult(ToldByResult&&) = default;
    ToldByResult& operator=(ToldByResult&&) = delete;

    /// The result names the device.
    void setTold() { _isTold = true; }

private:
    std::shared_ptr<Kesto> _kesto;
    bool _isTold = false;
};

template <typename Step>
void Kesto::_safely(const Step& step) noexcept
{
    try {
        step();
    } catch (...) {
        // The text of the exception may find no memory either.
        KesLog::Log::writeError("out of memory");
    }
}

} // namespace KesDevice
