#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoLink.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace KesDriver {

class ServedDevice;
class SessionSet;
class SimulatedFaults;
class SimulatedHost;

/// A device that exists only in this process, with a thread and a clock of its own.
///
/// Every event is computed on the device's clock and stamped with it, so measured times do not depend on the
/// scheduling of the host; a speed factor lets the clock run faster than real time. Between events the clock
/// follows real time; it never goes back, and it never passes an event that is still to come. What is due
/// happens before a request is carried out. Links within the process have sessions with it as programs in the
/// network have with a `DeviceServer`; their threads begin with the first connection. The device waits until
/// such a link has delivered its reports, so a receiver that stops the outputs from inside a report does so
/// before anything else can happen; but it waits two seconds at most. All devices of a process share a common
/// clock. The outputs and the auxiliary supply go off as soon as the end of a connection is seen. It can be
/// made to fail in every way in which a real device does. Any thread.
class KES_EXPORT SimulatedKesto {
public:
    /// With a firmware version and a day of calibration of its own.
    explicit SimulatedKesto(KestoIdentifer identifer, const OutputLimits& limits = {});
    explicit SimulatedKesto(KestoIdentity identity, const OutputLimits& limits = {});
    /// A connected link loses its connection.
    ~SimulatedKesto();
    SimulatedKesto(const SimulatedKesto&) = delete;
    SimulatedKesto& operator=(const SimulatedKesto&) = delete;

    const KestoIdentity& getIdentity() const;
    KestoIdentifer getIdentifer() const;

    /// Device seconds per real second, from a millionth to a million; 1 at first. Refused (false) otherwise.
    /// The device time continues from its present value.
    bool setSpeed(double factor);

    /// Wires a test object to outputs and inputs, and resets it; null: nothing. Refused (false) while a
    /// sequence runs or is armed. The device calls it with its own lock held: it must not call the device.
    bool connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject);

    /// What is connected to each current output, in ohms; 0.05 at first. A current whose power in it is above
    /// `OutputLimits::maximumVoltAmperes` is an overload of its channel.
    void setBurden(double ohms);
    /// A hand at the bench: closes or opens a wire at a binary input, beside the contact of the test object.
    /// The input is closed while one of them is. Inputs count from 1; others are ignored.
    void setInput(unsigned input, bool isClosed);

    /// The outputs at this moment; all zero and open when the device is not in working mode.
    OutputState getOutputs() const;
    /// Whether the power amplifiers are on.
    bool isWorking() const;
    /// How often a current or a voltage has risen from zero while all others were zero.
    unsigned getEnergisings() const;

    /// How long a link of this process waits for an answer, from its next connection on; two seconds at
    /// first.
    void setTimeout(std::chrono::milliseconds timeout);
    /// The real time after which a lasting fault is reported again; one second at first.
    void setFaultRepeatInterval(std::chrono::milliseconds interval);

    /// The ways in which it can fail, besides what its outputs bring about (overload, overheat). A fault sets
    /// all outputs to zero and ends a running sequence; its record comes at once, before the end of the
    /// sequence, and again and again while it lasts. Channels count from 0: IA, IB, IC, UA, UB, UC; others
    /// are ignored.
    void simulateOverload(unsigned channel);
    void simulateOverheat(unsigned channel);
    void simulateChannelLost(unsigned channel);
    void simulateQuickShutdown();
    /// Faults are over: the device is ready again.
    void clearFaults();

    /// Drops the connection once; reconnecting works. The outputs are off when it returns.
    void simulateConnectionLoss();
    /// Drops all connections once, also those that are being made, as `SIMulation:DROP` does. The outputs go
    /// off soon.
    void dropConnections();
    /// While set, nothing that the device says arrives: calls run into their time-out, and a link notices
    /// within the time-out that its connection is lost. It still obeys.
    void setSilent(bool silent);
    /// Every answer takes this long, in real time, and holds up the reports behind it; what was asked for is
    /// done at once. With a delay of at least the time-out the connection is lost as with a silent device.
    void setAnswerDelay(std::chrono::milliseconds delay);
    /// While set, answers and events hold nonsense: wrong identifiers, times that go back, inputs that
    /// do not exist, values that are not finite. Some events come at once. It still obeys.
    void setNonsense(bool nonsense);

private:
    friend class DeviceServer;
    friend class SimulatedNetwork;

    void _raiseFault(const std::function<void(SimulatedFaults&)>& raise);
    int _connect();
    /// Whether somebody who asks would get an answer in time.
    bool _isReachable() const;
    /// The controller: "this program" or the name that another one has given; empty when there is none.
    std::string _getOwner() const;

    const std::shared_ptr<SimulatedHost> _host;
    const std::shared_ptr<ServedDevice> _served;
    /// Those of the links of this process; made with the first one.
    std::unique_ptr<SessionSet> _sessions;
    std::mutex _mutex;
    std::atomic<std::chrono::milliseconds> _timeout{std::chrono::milliseconds(2000)};
};

} // namespace KesDriver
