#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoLink.h>
#include <KesDriver/ISimulatedTestObject.h>

#include <memory>

namespace KesDriver {

/// A device that exists only in this process, with a thread and a clock of its own.
///
/// Every event is computed on the device's clock and stamped with it, so measured times do not depend on the
/// scheduling of the host; a speed factor lets the clock run faster than real time. It can be told to
/// fail in every way in which a real device does. Any thread.
class KES_EXPORT SimulatedKesto {
public:
    explicit SimulatedKesto(KestoIdentifer identifer, OutputLimits limits = {});
    ~SimulatedKesto();
    SimulatedKesto(const SimulatedKesto&) = delete;
    SimulatedKesto& operator=(const SimulatedKesto&) = delete;

    KestoIdentifer getIdentifer() const;

    /// Device seconds per real second; above zero. 1 at first. Refused (false) otherwise.
    bool setSpeed(double factor);

    /// Wires a test object to outputs and inputs; null: nothing. Not while a sequence runs.
    void connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject);

    /// The outputs at this moment; all zero when the device is not in working mode.
    OutputState getOutputs() const;

    /// A new link to this device; one link at a time can be connected. The device outlives its links' use:
    /// a link to a device that has gone fails to connect.
    static std::unique_ptr<IKestoLink> createLink(std::shared_ptr<SimulatedKesto> device);

    /// The ways in which it can fail.
    void simulateOverload(unsigned channel);
    void simulateOverheat(unsigned channel);
    /// Channels count from 0: IA, IB, IC, UA, UB, UC.
    void simulateChannelLost(unsigned channel);
    void simulateQuickShutdown();
    /// Drops the connection once; reconnecting works.
    void simulateConnectionLoss();
    /// While set, the device does not answer: calls run into their time-out.
    void setSilent(bool silent);
    /// Every answer takes this long, in real time.
    void setAnswerDelay(std::chrono::milliseconds delay);
    /// While set, answers and events hold nonsense: wrong identifiers, times that go back, inputs that
    /// do not exist, values that are not finite.
    void setNonsense(bool nonsense);
    /// Faults are over: the device is ready again.
    void clearFaults();

private:
    friend class SimulatedLink;
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDriver
