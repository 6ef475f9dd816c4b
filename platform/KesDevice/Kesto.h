#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Nullable.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>
#include <KesDevice/AuxDC.h>
#include <KesDevice/DeviceState.h>
#include <KesDriver/IKestoLink.h>
#include <KesDriver/IKestoNetwork.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace KesDevice {

class FaultStopper;

/// One test device. Shared by its configuration and by all who use it.
///
/// Everything that happens to a device goes through its one state: an operation is carried out when the state
/// allows it, and the result of an operation or a report of the device changes the state first and is
/// reported then. A device that sends nonsense, does not obey, or does not answer in time is not trusted: it
/// gets the order to stop, is disconnected (its own watchdog then switches everything off), and is faulty or
/// lost until it is connected again.
///
/// Getters and `disconnect`: any thread. Operations block until the device has answered or has missed its
/// time-out: any thread but the GUI thread. Inside a slot they let go of the signal gate. Signals are emitted
/// on the thread that found out: a device thread or that of the caller of an operation.
class KES_EXPORT Kesto : public std::enable_shared_from_this<Kesto>, private KesDriver::IReportReceiver {
public:
    using Address = KesDriver::NetAddress;

    /// A device at a network address, reached by the link.
    static std::shared_ptr<Kesto> create(const Address& address, std::unique_ptr<KesDriver::IKestoLink> link);
    /// Asks which device is at the address. Makes a connection for this question only and switches nothing:
    /// for a device that no configuration is connected to. Blocks as the operations do.
    static Kes::Result identify(KesDriver::IKestoNetwork& network, const Address& address,
                                KesDriver::KestoIdentity& identity, bool& isSimulated);
    ~Kesto() override;
    Kesto(const Kesto&) = delete;
    Kesto& operator=(const Kesto&) = delete;

    /// `getOperationError()` has changed; the argument is the new one, valid during the emission.
    Kes::Signal<void(const Kes::Nullable<std::string>&)> signalOperationErrorChanged;
    /// A report of the device that makes sense. A fault is reported once, and again when it has changed, has
    /// cleared and come back, or the device has been connected again; a fault or loss that is the result of
    /// an operation of the configuration is reported by that result only. When a listener throws at an event,
    /// the device is disconnected and is faulty: a measurement without that event would be wrong. The
    /// reference is valid during the emission.
    Kes::Signal<void(const KesDriver::Report&)> signalReport;
    /// Something else that the user should know, such as that the device sends nonsense. Never null.
    Kes::Signal<void(const char*)> signalNotice;

    /// The network address, which never changes.
    const Address& getAddress() const { return _address; }
    /// As the device last reported; of unknown type before the first connection.
    KesDriver::KestoIdentity getIdentity() const;
    KesDriver::KestoIdentifer getIdentifer() const { return getIdentity().identifer; }
    /// Identifier and address, as errors name the device: "KESTO-3 No. 00017 (192.168.1.2)".
    std::string toDisplayString() const;
    /// Whether the device is a simulated one: results obtained with it say nothing about a real relay.
    bool isSimulated() const;
    /// As the device reported when it was connected; those of an ordinary device before that, and when it
    /// sent nonsense.
    KesDriver::OutputLimits getLimits() const;

    AuxDC& auxDC() { return _auxDC; }
    const AuxDC& auxDC() const { return _auxDC; }

    /// The one state; see `DeviceState`.
    DeviceState getState() const;
    /// What is wrong with the device, naming neither it nor its address unless it says so itself; empty when
    /// nothing is.
    std::string getStateReason() const;
    /// The same for the status row. No value: unknown (never asked, or disconnected). Empty: no error.
    Kes::Nullable<std::string> getOperationError() const;
    /// Whether there is a connection that can be used: the state is ready, working, or faulty and not let go
    /// of.
    bool isConnected() const;

    /// Connects, identifies, sets the auxiliary supply and asks for limits and state; succeeds at once when
    /// connected. A device that is not ready counts as connected. There is one attempt at a time: a caller
    /// that comes meanwhile waits for it and gets its result.
    Kes::Result connect();
    /// Outputs and auxiliary supply go off with the connection; the state is absent. Ends an attempt under
    /// way, and operations that wait for an answer. Does not wait for the device: any thread.
    void disconnect();
    /// Asks for the state; connects when there is no connection.
    Kes::Result updateState();

    /// Refused unless the device is ready. Waits for a `stopWorkingMode` of another thread, and gives way to
    /// one that comes meanwhile.
    Kes::Result startWorkingMode();
    /// Succeeds when there is no connection, or none any more: the device switches off by itself then. One
    /// that does not obey is let go of.
    Kes::Result stopWorkingMode();

    /// As the operations of `KesDriver::IKestoLink`. A sequence is sent when the end of the one before has
    /// been reported to all listeners (half a second later at most), so that nobody mixes up the two. Values
    /// outside the limits are refused without asking the device, with an error that names channel, value and
    /// limit.
    Kes::Result setOutputs(const KesDriver::OutputState& outputs);
    Kes::Result runSequence(const KesDriver::OutputSequence& sequence);
    /// A device that does not obey is disconnected, and `signalNotice` reports it: a caller in a hurry can
    /// ignore the result.
    Kes::Result stopOutputs();
    Kes::Result armSequence(const KesDriver::OutputSequence& sequence);
    Kes::Result startArmed(const KesDriver::StartMoment& moment);
    Kes::Result readClock(KesDriver::ClockReading& reading);
    Kes::Result readTime(KesDriver::DeviceTime& time);

private:
    friend class AuxDC;
    friend class FaultStopper;
    friend class HardwareManager;
    friend class KestoCollection;
    struct Attempt;
    class ToldByResult;
    /// A report for `signalReport` or a text for `signalNotice`.
    using News = std::variant<KesDriver::Report, std::string>;

    Kesto(const Address& address, std::unique_ptr<KesDriver::IKestoLink> link);

    /// The configuration has been replaced: no attempt to connect begins any more, and one under way that has
    /// not got its address yet is given up. It would wait for the end of its own configuration.
    void _refuse();
    /// The device is no part of a configuration in use any more: disconnects, for good.
    void _retire();
    /// Who stops the other devices when this one fails; none for a device on its own.
    void _setFaultStopper(std::weak_ptr<FaultStopper> stopper);

    // Connecting, asking and ending (KestoConnection.cpp)

    Kes::Result _attempt(unsigned epoch);
    void _giveUp(Attempt& attempt);
    Kes::Result _open(unsigned epoch, KesDriver::KestoState& state);
    Kes::Result _openLink(unsigned epoch);
    Kes::Result _identify();
    Kes::Result _readLimits();
    Kes::Result _readState(KesDriver::KestoState& state);
    void _applyState(const KesDriver::KestoState& state, unsigned epoch, unsigned auxDCChange);
    void _applyRefusal(const Kes::Result& refusal, unsigned epoch);
    Kes::Result _sendAuxDC(bool enable, double volts);
    /// Asks the device; a connection that is lost meanwhile changes the state before the result is there.
    Kes::Result _ask(const std::function<Kes::Result(KesDriver::IKestoLink&)>& question);
    Kes::Result _sendSequence(const KesDriver::OutputSequence& sequence,
                              Kes::Result (KesDriver::IKestoLink::*send)(const KesDriver::OutputSequence&));
    template <typename Answer>
    Kes::Result _askFor(Answer& answer, Kes::Result (KesDriver::IKestoLink::*question)(Answer&));
    Kes::Result _switchOff(KesDriver::IKestoLink& link, unsigned epoch);
    /// Ends the link's connection while no attempt to connect can begin.
    enum class LetGo { AtOnce, StopFirst };
    void _endLink(LetGo how);

    // What the device reports, and what follows (KestoReports.cpp)

    void receive(KesDriver::ConnectionNumber connection, const KesDriver::Report& report) override;
    void _onEvent(KesDriver::ConnectionNumber connection, KesDriver::Report event);
    /// A report of the device is lost: nobody may continue without it.
    void _onUntold(KesDriver::ConnectionNumber connection) noexcept;
    std::string _getUntoldText(const std::string& reason) const;
    void _onAvary(KesDriver::ConnectionNumber connection, const KesDriver::KesAvary& avary);
    void _onLost(KesDriver::ConnectionNumber connection);
    void _lose(unsigned epoch);
    /// Stops a device that cannot be trusted, disconnects it, and reports why.
    void _distrust(unsigned epoch, const std::string& reason, LetGo how);
    void _stopOthers();
    /// No step of an ending keeps the next one from being made: what it throws goes to the log.
    template <typename Step>
    static void _safely(const Step& step) noexcept;
    void _tellFailure(const std::optional<KesDriver::SequenceEvent>& end);
    void _tellAnnounced();
    void _emit(const News& news);
    /// What the last listener has thrown that has not taken the report.
    std::optional<std::string> _emitReport(const KesDriver::Report& report);
    void _emitReportOrNotice(const KesDriver::Report& report);
    void _emitOperationError();
    /// The end of a sequence that the device will not report any more: a program waits for it.
    void _emitEnd(const std::optional<KesDriver::SequenceEvent>& end);

    std::string _getText(const char* key) const;
    Kes::Result _failure(const char* key) const;
    /// Why the device cannot do what it is asked for.
    Kes::Result _refusal() const;
    bool _isConnectedNow() const;
    unsigned _getEpoch() const;
    bool _isAttemptWanted(unsigned epoch) const;

    const Address _address;
    AuxDC _auxDC;
    const std::unique_ptr<KesDriver::IKestoLink> _link;

    /// Everything about the connection and the state; under the mutex of `DeviceStateMachine`.
    struct Fields;
    const std::unique_ptr<Fields> _fields;
};

} // namespace KesDevice
