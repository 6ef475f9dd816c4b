#pragma once

#include <KesCommon/Worker.h>
#include <KesDriver/simulated/detail/ISimulatedObserver.h>
#include <KesDriver/simulated/detail/SimulatedDevice.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace KesDriver {

/// Gives a simulated device its lock, its thread and its controller. Shared by the bench, the thread and the
/// sessions. Any thread.
///
/// A request is carried out on the calling thread, after the events that are due; the device's own thread
/// lets events happen when their time has come, and informs a controller that its connection has been
/// dropped.
class SimulatedHost {
public:
    /// Control of the device from its beginning to its end. What it holds is called when the device ends it,
    /// on the device's thread without its lock.
    using Connection = std::shared_ptr<const std::function<void()>>;
    using Request = std::function<Kes::Result(SimulatedDevice&)>;
    /// Binary output 1 has changed then; called on the device's thread without its lock.
    using StartLine = std::function<void(bool isClosed, SimulatedDevice::Moment moment)>;

    static std::shared_ptr<SimulatedHost> start(KestoIdentity identity, const OutputLimits& limits);
    SimulatedHost(KestoIdentity identity, const OutputLimits& limits);

    /// Drops the connection and ends the thread.
    void shutDown();

    const KestoIdentity& getIdentity() const { return _device.getIdentity(); }

    // For the controller.

    /// False while there is another one, and when the device has shut down.
    bool connect(const Connection& connection);
    /// Everything off.
    void disconnect(const Connection& connection);
    /// What the device answers; nothing when the connection is not that of the device any more.
    std::optional<Kes::Result> call(const Connection& connection, const Request& request);

    // For the bench.

    /// As `SimulatedDevice::scheduleInput`: nothing that is due happens before, for the moment may have
    /// passed.
    void scheduleInput(unsigned input, bool isClosed, SimulatedDevice::Moment moment, DeviceTime delay);
    /// Asks the device, or does something to it, with its lock held.
    template <typename Action>
    auto use(Action&& action)
    {
        const Use use(*this);
        return _noteFailure([&] { return action(_device); });
    }
    void simulateConnectionLoss();
    void setStartLine(StartLine startLine);

    // For a server.

    /// One at a time; null for none. After it returns, the former one is no longer called.
    void setObserver(std::shared_ptr<ISimulatedObserver> observer);
    /// What the observer has stopped continues if `isAllowed`, which is asked with the device locked.
    void goOn(const std::function<bool()>& isAllowed);

private:
    using Lock = std::unique_lock<std::mutex>;
    using RealTime = SimulatedDevice::RealTime;

    /// Holds the lock. At its beginning what is due has happened; at its end the device's reports are on
    /// their way.
    class Use {
    public:
        explicit Use(SimulatedHost& host) : _host(host), _lock(host._mutex) { host._catchUp(); }
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
    void _tellLoss(Lock& lock);
    void _letOthersIn(Lock& lock);
    int _work(RealTime now);
    void _catchUp() noexcept;
    RealTime _getNextWake(RealTime now) const;
    bool _hasWork() const;

    void _passOnReports() noexcept;
    void _takeReports();
    void _show(const Report& report);
    bool _isHeld(RealTime now) const { return _heldUntil && now < *_heldUntil; }
    void _loseConnection();
    void _endConnection();

    mutable std::mutex _mutex;
    std::condition_variable _changed;
    Kes::Worker _worker;
    bool _stopping = false;
    /// A report has been lost or was not taken: the connection is lost next.
    bool _hasFailed = false;

    SimulatedDevice _device;
    Connection _connected;
    /// Those whose end is still to be reported.
    std::deque<Connection> _lost;
    StartLine _startLine;
    std::shared_ptr<ISimulatedObserver> _observer;
    /// The observer has stopped what happens.
    std::optional<RealTime> _heldUntil;
    /// When the thread, while it waits, wakes by itself.
    RealTime _wakes = RealTime::max();
    std::deque<std::pair<bool, SimulatedDevice::Moment>> _startSignals;
};

} // namespace KesDriver
