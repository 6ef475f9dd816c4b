#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/KestoIdentifer.h>
#include <KesDriver/Outputs.h>
#include <KesDriver/Report.h>

#include <memory>
#include <string>

namespace KesDriver {

/// The identity of a device. A value.
struct KestoIdentity {
    KestoIdentifer identifer;
    /// Such as "2.4.1"; empty when the device does not say.
    std::string firmwareVersion;
    /// The day of the last calibration, as ISO 8601 "2026-03-31"; empty when the device does not say.
    std::string calibrationDate;

    bool operator==(const KestoIdentity&) const = default;
};

/// The answer of a device to the question for its state. A value.
struct KestoState {
    /// Working mode can be started.
    bool isReady = false;
    bool isAuxDCEnabled = false;
    /// As set, 12 to 300.
    double auxDCVolts = 0.0;
    /// Why the device is not ready, in the device's words; empty when it is.
    std::string error;
};

/// The connection to one device. Made by an `IKestoNetwork`, owned by the user of the device.
///
/// Any thread; but a call blocks until the device has answered or the link's time-out (2 s at most) has
/// passed, so never the GUI thread. Calls may overlap. Every failure is an error that names the device; one
/// that means that there is no connection (any more) is a `ConnectionError`.
///
/// A connected link watches its device on a thread of its own, whether it is being asked or not: a device
/// that does not answer within the time-out, or drops the connection, is reported once as `ConnectionLost`,
/// and the link is disconnected then. The device, for its part, switches all outputs and the auxiliary supply
/// off within `OutputLimits::releaseTime` after it has lost its controller.
class KES_EXPORT IKestoLink {
public:
    /// Disconnects, as `disconnect`. May happen inside a report of the link.
    virtual ~IKestoLink();

    /// Whether what answers is simulated: what it measures says nothing about the world.
    virtual bool isSimulated() const { return false; }

    /// The receiver of the reports from now on. While a report is being delivered the link holds the
    /// receiver; nobody else needs to keep it.
    virtual void setReceiver(std::weak_ptr<IReportReceiver> receiver) = 0;

    /// Begins a connection and gives back its number. Fails while there is one already.
    virtual Kes::Result connect(ConnectionNumber& connection) = 0;
    /// Ends the connection, also one that is being made: calls under way fail at once. Does not wait for the
    /// device. The loss is not reported.
    virtual void disconnect() = 0;

    virtual Kes::Result identify(KestoIdentity& identity) = 0;
    virtual Kes::Result readState(KestoState& state) = 0;
    virtual Kes::Result readLimits(OutputLimits& limits) = 0;
    virtual Kes::Result readTime(DeviceTime& time) = 0;

    /// The auxiliary supply of the relay, off at every connection's beginning. Volts from 12 to 300.
    virtual Kes::Result setAuxDC(bool enable, double volts) = 0;

    /// Switches the power amplifiers on, with all outputs at zero.
    virtual Kes::Result startWorkingMode() = 0;
    /// Ends a running or armed sequence, sets all outputs to zero and switches the amplifiers off.
    virtual Kes::Result stopWorkingMode() = 0;

    /// Steady outputs; refused while a sequence runs or is armed, in a fault, out of working mode and outside
    /// the limits.
    virtual Kes::Result setOutputs(const OutputState& outputs) = 0;
    /// Starts a sequence and returns; refused as `setOutputs` is, and for a sequence without steps.
    virtual Kes::Result runSequence(const OutputSequence& sequence) = 0;
    /// Ends a running or armed sequence and sets all outputs to zero; within 10 ms on a device that answers.
    virtual Kes::Result stopOutputs() = 0;

    /// Takes a sequence as `runSequence` does, and waits for its start with all outputs at zero. The
    /// reference waves restart with the sequence, so those of devices that start together are in phase.
    virtual Kes::Result armSequence(const OutputSequence& sequence) = 0;
    /// Says when the armed sequence begins; refused without one, and for a moment that has passed.
    virtual Kes::Result startArmed(const StartMoment& moment) = 0;
    /// Reads the device's clock beside the common one. A device without a common clock refuses.
    virtual Kes::Result readClock(ClockReading& reading) = 0;
};

} // namespace KesDriver
