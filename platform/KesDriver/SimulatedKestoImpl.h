#pragma once

#include <KesDriver/SimulatedClock.h>
#include <KesDriver/SimulatedFaults.h>
#include <KesDriver/SimulatedKesto.h>
#include <KesDriver/SimulatedOutput.h>
#include <KesDriver/SimulatedPort.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace KesDriver {

/// The inner side of a simulated device, shared by the device, its thread and the calls of its links. Any
/// thread.
///
/// Everything below `_mutex`. A call is carried out on the calling thread; the device's own thread lets
/// events happen when their time has come and delivers the reports.
class SimulatedKesto::Impl {
public:
    using Port = std::shared_ptr<SimulatedPort>;

    Impl(KestoIdentifer identifer, OutputLimits limits);

    /// The thread keeps the object alive until it has ended.
    void start(const std::shared_ptr<Impl>& self);
    /// Drops the connection, delivers what is left and ends the thread.
    void shutDown();

    const KestoIdentifer& getIdentifer() const { return _identifer; }

    // For links. `name` stands for the device in errors.

    Kes::Result connect(const Port& port, const std::string& name);
    void disconnect(const Port& port);
    bool isConnected(const Port& port) const;
    Kes::Result identify(const Port& port, const std::string& name, KestoIdentifer& identifer);
    Kes::Result readState(const Port& port, const std::string& name, KestoState& state);
    OutputLimits getLimits() const;
    Kes::Result setAuxDC(const Port& port, const std::string& name, bool enable, double volts);
    Kes::Result startWorkingMode(const Port& port, const std::string& name);
    Kes::Result stopWorkingMode(const Port& port, const std::string& name);
    Kes::Result setOutputs(const Port& port, const std::string& name, const OutputState& outputs);
    Kes::Result runSequence(const Port& port, const std::string& name, const OutputSequence& sequence);
    Kes::Result stopOutputs(const Port& port, const std::string& name);
    DeviceTime getTime() const;

    // For the bench.

    bool setSpeed(double factor);
    bool connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject);
    OutputState getOutputs() const;
    void raiseFault(const std::function<void(SimulatedFaults&)>& raise);
    void clearFaults();
    void simulateConnectionLoss();
    void setTimeout(std::chrono::milliseconds timeout);
    void setFaultRepeatInterval(std::chrono::milliseconds interval);
    void setSilent(bool silent);
    void setAnswerDelay(std::chrono::milliseconds delay);
    void setNonsense(bool nonsense);

private:
    using Lock = std::unique_lock<std::mutex>;
    using RealTime = SimulatedClock::RealTime;
    struct Delivery {
        Port port;
        SimulatedPort::Report report;
    };

    void _run();
    void _deliverNext(Lock& lock);
    void _letOthersIn(Lock& lock);
    bool _doDueWork(RealTime now);
    RealTime _getNextWake(RealTime now) const;

    /// A request on its way: the body runs when the device hears it, and its result comes back with the
    /// answer.
    Kes::Result _call(const Port& port, const std::string& name, const std::function<Kes::Result()>& body);
    bool _waitWhileSilent(Lock& lock, const std::function<bool()>& isGivenUp);
    bool _waitForAnswer(Lock& lock, const Port& port);
    std::string _describeFaults() const;
    Kes::Result _checkReadyForOutput() const;

    DeviceTime _now() const;
    void _report(SimulatedPort::Report report);
    void _reportFaults();
    void _passOnOutputReports();
    void _loseConnection();
    void _endConnection();
    void _dropDeliveries(const Port& port);

    const KestoIdentifer _identifer;
    const OutputLimits _limits;

    mutable std::mutex _mutex;
    std::condition_variable _changed;
    std::thread _thread;
    bool _stopping = false;

    SimulatedClock _clock;
    mutable DeviceTime _lastTime{0};
    SimulatedOutput _output;
    SimulatedFaults _faults;
    bool _auxDCEnabled = false;
    double _auxDCVolts = 0.0;

    Port _connected;
    std::deque<Delivery> _deliveries;

    std::chrono::milliseconds _timeout{2000};
    std::chrono::milliseconds _faultRepeatInterval{1000};
    RealTime _nextFaultReport;
    bool _silent = false;
    RealTime _silentSince;
    std::chrono::milliseconds _answerDelay{0};
    bool _nonsense = false;
};

} // namespace KesDriver
