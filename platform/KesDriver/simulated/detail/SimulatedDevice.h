#pragma once

#include <KesDriver/IKestoLink.h>
#include <KesDriver/simulated/detail/SimulatedClock.h>
#include <KesDriver/simulated/detail/SimulatedFaults.h>
#include <KesDriver/simulated/detail/SimulatedOutput.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace KesDriver {

/// A simulated device without its connection: what it does when it is asked, and what it does by itself when
/// its owner lets it. Not synchronised; its owner does that.
class SimulatedDevice {
public:
    using RealTime = SimulatedClock::RealTime;
    using Moment = SimulatedClock::Moment;

    SimulatedDevice(KestoIdentity identity, const OutputLimits& limits);

    const KestoIdentity& getIdentity() const { return _identity; }

    // What a link asks for, as in IKestoLink.

    Kes::Result identify(KestoIdentity& identity) const;
    Kes::Result readState(KestoState& state) const;
    Kes::Result readLimits(OutputLimits& limits) const;
    Kes::Result readTime(DeviceTime& time);
    Kes::Result setAuxDC(bool enable, double volts);
    Kes::Result startWorkingMode();
    Kes::Result stopWorkingMode();
    Kes::Result setOutputs(const OutputState& outputs);
    Kes::Result runSequence(const OutputSequence& sequence);
    Kes::Result stopOutputs();
    Kes::Result armSequence(const OutputSequence& sequence);
    Kes::Result startArmed(const StartMoment& moment);
    Kes::Result readClock(ClockReading& reading) const;

    // What the bench does to it, as in SimulatedKesto.

    bool setSpeed(double factor);
    bool connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject);
    OutputState getOutputs() const;
    bool isWorking() const { return _output.isWorking(); }
    /// A sequence waits for its start.
    bool isArmed() const { return _output.isArmed(); }
    /// A sequence runs or waits for its start.
    bool hasSequence() const { return _output.hasSequence(); }
    /// The closed inputs; bit 0 is input 1.
    std::uint32_t getInputs() const { return _output.getInputs(); }
    bool isAuxDCEnabled() const { return _auxDCEnabled; }
    /// As set last, also when it is off; 0 before that.
    double getAuxDCVolts() const { return _auxDCVolts; }
    const SimulatedFaults& getFaults() const { return _faults; }
    const OutputLimits& getLimits() const { return _limits; }
    /// When the last current or voltage became zero.
    DeviceTime getZeroTime() const { return _output.getZeroTime(); }
    /// As far as its clock has been looked at or its events have happened.
    DeviceTime getLastTime() const { return std::max(_lastTime, _output.getTime()); }
    double getSpeed() const { return _clock.getSpeed(); }
    unsigned getEnergisings() const { return _output.getEnergisings(); }
    void setBurden(double ohms);
    void setInput(unsigned input, bool isClosed);
    /// The wire at an input changes at a moment that may have just passed, and `delay` of device time later.
    void scheduleInput(unsigned input, bool isClosed, Moment moment, DeviceTime delay);
    void raiseFault(const std::function<void(SimulatedFaults&)>& raise);
    void clearFaults() { _faults = {}; }
    void setFaultRepeatInterval(std::chrono::milliseconds interval);
    void setNonsense(bool nonsense);

    // Its own life.

    /// A controller has come: from now on it hears of faults that last.
    void beginConnection();
    /// The controller has gone: everything off.
    void release();

    /// Does what is due and returns how much that was. Stops at the first report, so that its receiver can
    /// act before anything else happens, and after a while, so that others get their turn.
    int work(RealTime now, bool isConnected);
    RealTime getNextWake(RealTime now, bool isConnected) const;

    /// What it has reported since the last call, in order.
    std::vector<Report> takeReports() { return std::exchange(_reports, {}); }
    /// Changes of binary output 1 since the last call.
    std::vector<std::pair<bool, Moment>> takeStartSignals() { return std::exchange(_startSignals, {}); }

private:
    DeviceTime _now();
    std::string _describeFaults() const;
    Kes::Result _checkFaults() const;
    Kes::Result _checkReadyForOutput() const;
    Kes::Result _checkSequence(const OutputSequence& sequence) const;
    Kes::Result _startArmedAt(CommonTime common);

    void _report(Report report);
    void _reportFaults();
    void _passOn(const SimulatedTrip& trip);
    void _passOnOutputReports();

    const KestoIdentity _identity;
    const OutputLimits _limits;

    SimulatedClock _clock;
    DeviceTime _lastTime{0};
    SimulatedOutput _output;
    /// When the armed sequence begins.
    std::optional<CommonTime> _startTime;
    SimulatedFaults _faults;
    std::chrono::milliseconds _faultRepeatInterval{1000};
    RealTime _nextFaultReport;
    bool _auxDCEnabled = false;
    double _auxDCVolts = 0.0;
    bool _nonsense = false;

    std::vector<Report> _reports;
    std::vector<std::pair<bool, Moment>> _startSignals;
};

} // namespace KesDriver
