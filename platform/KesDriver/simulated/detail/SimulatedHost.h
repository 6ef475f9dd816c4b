#pragma once

#include <KesCommon/Worker.h>
#include <KesDriver/simulated/detail/ISimulatedObserver.h>
#include <KesDriver/simulated/detail/SimulatedConnection.h>
#include <KesDriver/simulated/detail/SimulatedDevice.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace KesDriver {

/// Gives a simulated device its lock, its thread and its connection. Shared by the bench, the thread and the
/// links. Any thread.
///
/// A request is carried out on the calling thread; the device's own thread lets events happen when their time
/// has come, watches the connection and delivers the reports.
class SimulatedHost {
public:
    using Connection = std::shared_ptr<SimulatedConnection>;
    using Request = std::function<Kes::Result(SimulatedDevice&)>;
    /// Binary output 1 has changed then; called on the device's thread without its lock.
    using StartLine = std::function<void(bool isClosed, SimulatedDevice::Moment moment)>;

    static std::shared_ptr<SimulatedHost> start(KestoIdentity identity, const OutputLimits& limits);
    SimulatedHost(KestoIdentity identity, const OutputLimits& limits);

    /// Drops the connection, delivers what is left and ends the thread.
    void shutDown();

    const KestoIdentity& getIdentity() const { return _device.getIdentity(); }
    /// Whether somebody who asks would get an answer.
    bool isReachable() const;
    /// Whether a link is connected, or just connecting.
    bool isConnected() const;

    // For links.

    Kes::Result connect(const Connection& connection);
    void disconnect(const Connection& connection);
    Kes::Result call(const Connection& connection, const Request& request);
    /// As `call`, for a request that begins a new sequence: when it is carried out, the reports so far have
    /// been heard, unless the caller is hearing one.
    Kes::Result callAfterReports(const Connection& connection, const Request& request);

    // For the bench.

    /// Asks the device, or does something to it, with its lock held.
    template <typename Action>
    auto use(Action&& action)
    {
        const Use use(*this);
        return _noteFailure([&] { return action(_device); });
    }
    void simulateConnectionLoss();
    void setTimeout(std::chrono::milliseconds timeout);
    std::chrono::milliseconds getTimeout() const;
    void setSilent(bool silent);
    void setAnswerDelay(std::chrono::milliseconds delay);
    void setStartLine(StartLine startLine);

    // For a server.

    /// One at a time; null for none. After the return the one before is not called any more.
    void setObserver(std::shared_ptr<ISimulatedObserver> observer);
    /// What the observer has stopped goes on if `isAllowed`, which is asked with the device locked.
    void goOn(const std::function<bool()>& isAllowed);

private:
    using Lock = std::unique_lock<std::mutex>;
    using RealTime = SimulatedDevice::RealTime;

    struct Delivery {
        Connection connection;
        Report report;
        /// The number of sequences that the device had taken.
        std::size_t sequence = 0;
    };

    /// Holds the lock; at its end the device's reports are on their way.
    class Use {
    public:
        explicit Use(SimulatedHost& host) : _host(host), _lock(host._mutex) { _host._watch(); }
        ~Use() { _host._passOnReports(); }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

    private:
        SimulatedHost& _host;
        std::lock_guard<std::mutex> _lock;
    };

    void _run();
    void _step(Lock& lock);
    void _fail(Lock& lock);
    void _loseAfterFailure();
    /// What is thrown may have cost a report.
    template <typename Action>
    auto _noteFailure(Action&& action)
    {
        try {
            return action();
        } catch (...) {
            _hasFailed = true;
            _changed.notify_all();
            throw;
        }
    }
    void _giveStartSignal(Lock& lock);
    void _deliverNext(Lock& lock);
    void _letOthersIn(Lock& lock);
    bool _work(RealTime now);
    bool _watch();
    RealTime _getNextWake(RealTime now) const;

    Kes::Result _tryConnect(Lock& lock, const Connection& connection);
    Kes::Result _call(Lock& lock, const Connection& connection, const Request& request);
    bool _waitToBeHeard(Lock& lock, const Connection& connection);
    bool _waitForAnswer(Lock& lock, const Connection& connection);
    void _waitForReceiver(Lock& lock, const Connection& connection);
    Kes::Result _getFailure(const Connection& connection) const;

    bool _isReachable() const { return !_silent && _answerDelay < _timeout; }
    /// A session's own end notices that nothing comes.
    bool _isWatched() const { return _connected && !_connected->isServed && !_isReachable(); }
    void _noteReachability(bool wasReachable);
    void _passOnReports() noexcept;
    void _takeReports();
    void _show(const Report& report);
    bool _isHeld(RealTime now) const { return _heldUntil && now < *_heldUntil; }
    void _loseConnection();
    void _endConnection();

    mutable std::mutex _mutex;
    std::condition_variable _changed;
    Kes::Worker _worker;
    std::thread::id _threadId;
    bool _stopping = false;
    /// A report has been lost or was not taken: the connection is lost next.
    bool _hasFailed = false;

    SimulatedDevice _device;
    Connection _connected;
    std::deque<Delivery> _deliveries;
    bool _isDelivering = false;
    StartLine _startLine;
    std::shared_ptr<ISimulatedObserver> _observer;
    /// The observer has stopped what happens.
    std::optional<RealTime> _heldUntil;
    std::deque<std::pair<bool, SimulatedDevice::Moment>> _startSignals;

    std::chrono::milliseconds _timeout{2000};
    bool _silent = false;
    std::chrono::milliseconds _answerDelay{0};
    RealTime _unreachableSince;
};

} // namespace KesDriver
