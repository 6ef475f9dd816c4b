#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/NotifyCollection.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>
#include <KesDevice/HardwareVirtualChannels.h>
#include <KesDevice/Kesto.h>
#include <KesDevice/SyncManager.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace KesDevice {

/// The devices of a configuration, in order. The configuration owns them: a removed device is destroyed when
/// all listeners have heard of its removal.
class KES_EXPORT KestoCollection : public Kes::NotifyCollection<Kesto*> {
public:
    KestoCollection();
    ~KestoCollection() override;

    /// Takes the device over. A device whose address is already in the collection is refused.
    Kes::Result addKesto(std::unique_ptr<Kesto> kesto);
    /// Null when no device has the address.
    Kesto* find(const Kesto::Address& address) const;

protected:
    void _onRemoved(Kesto* const& kesto) override;

private:
    mutable std::mutex _ownedMutex;
    std::vector<std::unique_ptr<Kesto>> _owned;
};

/// A hardware configuration: the devices, their synchronisation and their common working mode.
///
/// Owned by `HardwareControl` or by a program. Operations: any thread, one at a time (later callers wait).
/// Signals are emitted on the thread on which the change was noticed: a device's thread, or the thread that
/// called the operation.
class KES_EXPORT HardwareManager {
public:
    /// A configuration without devices.
    static std::unique_ptr<HardwareManager> create();
    ~HardwareManager();
    HardwareManager(const HardwareManager&) = delete;
    HardwareManager& operator=(const HardwareManager&) = delete;

    /// The output has been started or stopped; the argument is the new `isOutputRunning()`.
    Kes::Signal<void(bool)> signalRunningChanged;
    /// What the configuration is doing, for the status bar; never null, empty when idle.
    Kes::Signal<void(const char*)> signalStatusChanged;
    /// A device has reported a fault. The record lives during the emission.
    Kes::Signal<void(KesDriver::KesAvary&)> signalAvary;
    /// Something the user should know about a device (null: about the configuration). The text is never null.
    Kes::Signal<void(Kesto*, const char*)> signalKestoState;

    KestoCollection& getKestos() { return _kestos; }
    const KestoCollection& getKestos() const { return _kestos; }
    SyncManager& getSyncManager() { return _syncManager; }
    const SyncManager& getSyncManager() const { return _syncManager; }
    HardwareVirtualChannels& getVirtualChannels() { return _virtualChannels; }
    const HardwareVirtualChannels& getVirtualChannels() const { return _virtualChannels; }

    /// A fault of one device stops the outputs of all. On in a program's own configuration.
    bool isStopOnFault() const { return _stopOnFault; }
    void setIsStopOnFault(bool stop) { _stopOnFault = stop; }
    /// Whether `signalStatusChanged` tells the steps of preparing and stopping.
    bool isStatusReported() const { return _statusReported; }
    void setIsStatusReported(bool reported) { _statusReported = reported; }

    /// Adds copies of the other configuration's devices (address, auxiliary supply), and takes over its
    /// synchronisation mode and settings. Nothing is connected by it.
    void fillFrom(const HardwareManager& other);
    /// A new configuration with the same content.
    std::unique_ptr<HardwareManager> clone() const;

    /// Whether one of the devices is simulated.
    bool isSimulated() const;
    bool isOutputRunning() const { return _running; }
    /// Whether the output runs or one of the operations below is under way.
    bool isBusy() const;

    /// Connects and identifies every device. Fails with one inner error per device that could not be reached.
    Kes::Result prepare();
    /// Switches the outputs of all devices on, at zero. On failure of one, all are switched off again.
    Kes::Result startWorkingMode();
    /// Sets all outputs to zero and switches them off. Also after a failure the output counts as not running.
    Kes::Result stopWorkingMode();
    /// Ends the connections to all devices.
    Kes::Result disconnect();

private:
    HardwareManager();
    class Impl;

    KestoCollection _kestos;
    SyncManager _syncManager;
    HardwareVirtualChannels _virtualChannels;
    std::atomic<bool> _stopOnFault{false};
    std::atomic<bool> _statusReported{false};
    std::atomic<bool> _running{false};
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDevice
