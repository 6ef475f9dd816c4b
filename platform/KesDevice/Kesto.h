#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Net/NetAddr.h>
#include <KesCommon/Nullable.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>
#include <KesDevice/AuxDC.h>
#include <KesDriver/IKestoLink.h>

#include <memory>
#include <string>

namespace KesDevice {

/// One test device of a hardware configuration. Owned by the configuration.
///
/// What a device says is not believed blindly: events of inputs that do not exist or with times that go back
/// are dropped, a nonsensical end of a sequence counts as an incomplete one, and the operation error says so.
///
/// Operations and getters: any thread; those that talk to the device block until it has answered or has
/// missed its time-out. Signals are emitted on the device's thread unless said otherwise; the references they
/// carry are valid during the emission only.
class KES_EXPORT Kesto {
public:
    using Address = Kes::Net::NetAddr<4, '.'>;

    /// A device at a network address, reached by a link made for that address.
    explicit Kesto(const Address& address);
    /// With a link of the caller's.
    Kesto(const Address& address, std::unique_ptr<KesDriver::IKestoLink> link);
    ~Kesto();
    Kesto(const Kesto&) = delete;
    Kesto& operator=(const Kesto&) = delete;

    /// What is wrong with the device has changed; the argument is the new `getOperationError()`. Emitted on
    /// the thread that found out: a device thread, the state updater's, or the caller's.
    Kes::Signal<void(const Kes::Nullable<std::string>&)> signalOperationErrorChanged;
    Kes::Signal<void(const KesDriver::InputEvent&)> signalInput;
    Kes::Signal<void(const KesDriver::StepEvent&)> signalStep;
    Kes::Signal<void(const KesDriver::SequenceEvent&)> signalSequenceFinished;
    /// A fault; a lost connection is one, with its connection-error flag set. A device repeats the record
    /// about every second while the fault lasts.
    Kes::Signal<void(KesDriver::KesAvary&)> signalAvary;
    /// Something else that the user should know, such as that the device sends nonsense. Never null.
    Kes::Signal<void(const char*)> signalNotice;

    const Address& getAddress() const { return _address; }
    /// As the device last told; of unknown type before the first connection.
    KesDriver::KestoIdentifer getIdentifer() const;
    /// Identifier and address, as errors name the device: "KESTO-3 No. 00017 (192.168.1.2)".
    std::string toDisplayString() const;
    /// Whether the device is a simulated one: results obtained with it say nothing about a real relay.
    bool isSimulated() const;
    /// As the device tells; those of an ordinary device when it is not connected or tells nonsense.
    KesDriver::OutputLimits getLimits() const;

    AuxDC& auxDC() { return _auxDC; }
    const AuxDC& auxDC() const { return _auxDC; }

    /// No value: unknown (never asked, or not connected). Empty: no error. Else what is wrong.
    Kes::Nullable<std::string> getOperationError() const;

    bool isConnected() const;
    /// Connects, identifies, sets the auxiliary supply and asks for the state; succeeds at once when
    /// connected. A device that is not ready counts as connected.
    Kes::Result connect();
    /// Outputs and auxiliary supply go off. The operation error is unknown afterwards.
    void disconnect();
    /// Asks for the state and updates the operation error; connects first when needed.
    Kes::Result updateState();

    /// Refused by a device that is not connected or has a fault.
    Kes::Result startWorkingMode();
    Kes::Result stopWorkingMode();

    /// As the operations of `KesDriver::IKestoLink`. Values outside the limits are refused without asking the
    /// device, with an error that names channel, value and limit.
    Kes::Result setOutputs(const KesDriver::OutputState& outputs);
    Kes::Result runSequence(const KesDriver::OutputSequence& sequence);
    Kes::Result stopOutputs();
    KesDriver::DeviceTime getTime() const;

private:
    friend class AuxDC;
    friend class HardwareManager;
    friend class KestoCollection;
    class Impl;

    /// The device is no part of a configuration in use any more: disconnects, for good.
    void _retire();
    Kes::Result _sendAuxDC(bool enable, double volts);

    const Address _address;
    AuxDC _auxDC;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDevice
