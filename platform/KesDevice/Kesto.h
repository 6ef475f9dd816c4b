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

    /// What is wrong with the device has changed; the argument is the new `getOperationError()`. Emitted on the
    /// thread that found out: a device thread, the state updater's, or the caller's.
    Kes::Signal<void(const Kes::Nullable<std::string>&)> signalOperationErrorChanged;
    Kes::Signal<void(const KesDriver::InputEvent&)> signalInput;
    Kes::Signal<void(const KesDriver::StepEvent&)> signalStep;
    Kes::Signal<void(const KesDriver::SequenceEvent&)> signalSequenceFinished;
    /// A fault; a lost connection is one, with its connection-error flag set.
    Kes::Signal<void(KesDriver::KesAvary&)> signalAvary;

    const Address& getAddress() const { return _address; }
    /// As the device last told; of unknown type before the first connection.
    KesDriver::KestoIdentifer getIdentifer() const;
    /// Whether the device is a simulated one: results obtained with it say nothing about a real relay.
    bool isSimulated() const;
    KesDriver::OutputLimits getLimits() const;

    AuxDC& auxDC() { return _auxDC; }

    /// No value: unknown (never asked, or not connected). Empty: no error. Else what is wrong.
    Kes::Nullable<std::string> getOperationError() const;

    bool isConnected() const;
    /// Connects, identifies and sets the auxiliary supply.
    Kes::Result connect();
    void disconnect();
    /// Asks for the state and updates the operation error; connects first when needed.
    Kes::Result updateState();

    Kes::Result startWorkingMode();
    Kes::Result stopWorkingMode();

    /// As the operations of `KesDriver::IKestoLink`.
    Kes::Result setOutputs(const KesDriver::OutputState& outputs);
    Kes::Result runSequence(const KesDriver::OutputSequence& sequence);
    Kes::Result stopOutputs();
    KesDriver::DeviceTime getTime() const;

private:
    friend class AuxDC;
    class Impl;

    const Address _address;
    AuxDC _auxDC;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDevice
