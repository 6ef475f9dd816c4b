#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>
#include <KesDevice/HardwareVirtualChannels.h>
#include <KesDevice/Kesto.h>
#include <KesDevice/KestoCollection.h>
#include <KesDevice/SyncManager.h>

#include <atomic>
#include <memory>

namespace KesDevice {

/// A hardware configuration: the devices, their synchronisation and their common working mode.
///
/// Owned by `HardwareControl` or by a program. Operations: any thread, one at a time; later callers wait, and
/// let go of the signal gate and serve the GUI thread's queue meanwhile. A slot may call operations: inside
/// an operation of the same thread they are carried out at once. Several devices are asked at the same time,
/// so an operation takes as long as the slowest one, a few seconds at most.
///
/// Signals are emitted on the thread on which the change was noticed: a device's thread, one that asks a
/// device, or the thread that called the operation.
///
/// A device that is lost while the output runs is reported by `signalAvary`; the output counts as running
/// until `stopWorkingMode`. Destroying a configuration switches its outputs off; never from inside its own
/// operation.
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
    /// A device has reported a fault; it repeats that while the fault lasts. The record lives during the
    /// emission. With `isStopOnFault` the others are already being told to set their outputs to zero; what
    /// cannot be stopped is told by `signalKestoState`.
    Kes::Signal<void(KesDriver::KesAvary&)> signalAvary;
    /// Something the user should know about a device (null: about the configuration). The text is never null.
    Kes::Signal<void(Kesto*, const char*)> signalKestoState;

    KestoCollection& getKestos() { return _kestos; }
    const KestoCollection& getKestos() const { return _kestos; }
    SyncManager& getSyncManager() { return _syncManager; }
    const SyncManager& getSyncManager() const { return _syncManager; }
    HardwareVirtualChannels& getVirtualChannels() { return _virtualChannels; }
    const HardwareVirtualChannels& getVirtualChannels() const { return _virtualChannels; }

    /// A fault of one device sets the outputs of all to zero. Off at first; on in a program's own
    /// configuration.
    bool isStopOnFault() const { return _stopOnFault; }
    void setIsStopOnFault(bool stop) { _stopOnFault = stop; }
    /// Whether `signalStatusChanged` tells the steps of the operations. Off at first; on in a program's own
    /// configuration.
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

    /// Connects and identifies every device, and asks for its state. Fails with one inner error per device
    /// that could not be reached; the others stay connected.
    Kes::Result prepare();
    /// Switches the outputs of all devices on, at zero. On failure of one, all are switched off again.
    /// Refused while the output runs, without devices, and for a configuration that has been replaced.
    Kes::Result startWorkingMode();
    /// Sets all outputs to zero and switches them off. Also after a failure the output counts as not running.
    /// Succeeds when the output does not run. A device that has been lost is passed over: it has switched
    /// off.
    Kes::Result stopWorkingMode();
    /// Ends the connections to all devices, after switching a running output off; fails as that does.
    Kes::Result disconnect();

private:
    friend class HardwareControl;
    HardwareManager();
    class Impl;

    /// Another configuration takes over: switches off, disconnects, and refuses to begin anything new.
    void _retire();

    KestoCollection _kestos;
    SyncManager _syncManager;
    HardwareVirtualChannels _virtualChannels;
    std::atomic<bool> _stopOnFault{false};
    std::atomic<bool> _statusReported{false};
    std::atomic<bool> _running{false};
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDevice
