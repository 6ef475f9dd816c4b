#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDriver/KesAvary.h>
#include <KesDriver/KestoIdentifer.h>
#include <KesDriver/Outputs.h>

namespace KesDriver {

/// What a device tells about itself when it is asked.
struct KestoState {
    bool isReady = false;
    bool isAuxDCEnabled = false;
    double auxDCVolts = 0.0;
    /// Why the device is not ready, in the device's words; empty when it is.
    std::string error;
};

/// What a device reports by itself. Called on the link's own thread, one call at a time, in the order of the
/// device's clock. A listener may call the link from inside a report, and may destroy it there.
class KES_EXPORT IKestoLinkListener {
public:
    virtual ~IKestoLinkListener();

    virtual void onInput(const InputEvent& event) = 0;
    virtual void onStep(const StepEvent& event) = 0;
    virtual void onSequenceFinished(const SequenceEvent& event) = 0;
    virtual void onAvary(const KesAvary& avary) = 0;
    /// The device has dropped the connection or does not answer any more; the link is disconnected. A device
    /// that has lost its connection switches everything off by itself.
    virtual void onConnectionLost() = 0;
};

/// The connection to one device. Any thread; a call blocks until the device has answered or the link's
/// time-out (a few seconds at most) has passed, and then fails with an error that says so. No call waits for
/// a report that is being delivered, so a listener may hold what the caller waits for.
class KES_EXPORT IKestoLink {
public:
    virtual ~IKestoLink();

    /// Whether what answers is simulated: what it measures says nothing about the world.
    virtual bool isSimulated() const { return false; }

    /// Connecting when connected succeeds at once.
    virtual Kes::Result connect() = 0;
    /// Outputs go to zero, the auxiliary supply goes off, the connection ends. Never fails.
    virtual void disconnect() = 0;
    virtual bool isConnected() const = 0;

    virtual Kes::Result identify(KestoIdentifer& identifer) = 0;
    virtual Kes::Result readState(KestoState& state) = 0;
    virtual OutputLimits getLimits() const = 0;

    /// The auxiliary direct-voltage output that feeds the relay, off at every connection's beginning. Volts
    /// from 12 to 300.
    virtual Kes::Result setAuxDC(bool enable, double volts) = 0;

    /// Switches the power amplifiers on, with all outputs at zero.
    virtual Kes::Result startWorkingMode() = 0;
    /// Ends a running sequence, sets all outputs to zero and switches the amplifiers off.
    virtual Kes::Result stopWorkingMode() = 0;

    /// Steady outputs; refused while a sequence runs, in a fault, out of working mode and outside the limits.
    virtual Kes::Result setOutputs(const OutputState& outputs) = 0;
    /// Starts a sequence and returns; refused as `setOutputs` is, and for a sequence without steps.
    virtual Kes::Result runSequence(const OutputSequence& sequence) = 0;
    /// Ends a running sequence and sets all outputs to zero; within 10 ms on a device that answers.
    virtual Kes::Result stopOutputs() = 0;

    /// The device's clock now.
    virtual DeviceTime getTime() const = 0;

    /// Replaces the listener (null: none). After it has returned, the previous one is not called any more; a
    /// report that is being delivered on another thread is waited for.
    virtual void setListener(IKestoLinkListener* listener) = 0;
};

} // namespace KesDriver
