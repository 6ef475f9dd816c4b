#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>
#include <KesDevice/HardwareVirtualChannels.h>
#include <KesDevice/Kesto.h>
#include <KesDevice/KestoCollection.h>
#include <KesDevice/SyncManager.h>
#include <KesDriver/IKestoNetwork.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace KesDevice {

class FaultStopper;
class OperationTurn;
class SyncedRun;

/// A hardware configuration: the devices, their synchronisation and their common working mode.
///
/// Owned by `HardwareControl` or by a program. Getters: any thread. Operations ask the devices, several at
/// the same time, and so take as long as the slowest one, which has two seconds for each answer: any thread
/// but the GUI thread, one operation at a time; later callers wait, and let go of the signal gate meanwhile.
/// A slot may call operations: inside an operation of the same thread they are carried out at once.
///
/// Signals are emitted on the thread on which the change was noticed: a device's thread, one that asks a
/// device, or the thread that called the operation. What is changed is changed before they are emitted, and
/// no slot can prevent a step of an operation.
///
/// A device that fails while the output runs is reported by `signalAvary` or `signalKestoState`, and
/// `checkOutput` says so from then on; the output counts as running until `stopWorkingMode`. Failures
/// of the preparation or the start are reported by its result only; `ToldByResults` joins the two. Destroying
/// a configuration switches its outputs off; never from inside its own operation.
class KES_EXPORT HardwareManager {
public:
    /// A configuration without devices, on the network of `HardwareControl`.
    static std::unique_ptr<HardwareManager> create();
    /// On a network of the caller's.
    static std::unique_ptr<HardwareManager> create(std::shared_ptr<KesDriver::IKestoNetwork> network);
    ~HardwareManager();
    HardwareManager(const HardwareManager&) = delete;
    HardwareManager& operator=(const HardwareManager&) = delete;

    /// The output has been started or stopped; the argument is the new `isOutputRunning()`.
    Kes::Signal<void(bool)> signalRunningChanged;
    /// What the configuration is doing, for the status bar; never null, empty when idle. With
    /// `isStatusReported` every step of the operations, else every end of connections and what takes longer
    /// than a moment. An inner step gives back the text of the outer one at its end.
    Kes::Signal<void(const char*)> signalStatusChanged;
    /// A device has reported a fault, or was lost. The record lives during the emission. With `isStopOnFault`
    /// the others are already receiving the order to set their outputs to zero.
    Kes::Signal<void(KesDriver::KesAvary&)> signalAvary;
    /// Something the user should know about a device (null: about the configuration). The text is never null.
    Kes::Signal<void(Kesto*, const char*)> signalKestoState;

    KestoCollection& getKestos() { return _kestos; }
    const KestoCollection& getKestos() const { return _kestos; }
    SyncManager& getSyncManager() { return _syncManager; }
    const SyncManager& getSyncManager() const { return _syncManager; }
    HardwareVirtualChannels& getVirtualChannels() { return _virtualChannels; }
    const HardwareVirtualChannels& getVirtualChannels() const { return _virtualChannels; }
    const std::shared_ptr<KesDriver::IKestoNetwork>& getNetwork() const { return _network; }

    /// Adds a device of the network, at the end; refuses an address that is taken. Nothing is connected by
    /// it.
    Kes::Result addKesto(const Kesto::Address& address);

    /// A fault of one device sets the outputs of all to zero. Off at first; on in a program's own
    /// configuration.
    bool isStopOnFault() const;
    void setIsStopOnFault(bool stop);
    /// Off at first; on in a program's own configuration.
    bool isStatusReported() const { return _statusReported; }
    void setIsStatusReported(bool reported) { _statusReported = reported; }

    /// Adds copies of the other configuration's devices (address, auxiliary supply), and takes over its
    /// synchronisation mode and settings. Nothing is connected by it.
    void fillFrom(const HardwareManager& other);
    /// A new configuration with the same content on the same network.
    std::unique_ptr<HardwareManager> clone() const;

    /// Whether one of the devices is simulated.
    bool isSimulated() const;
    bool isOutputRunning() const { return _running; }
    /// Whether the output runs or one of the operations below is under way.
    bool isBusy() const;
    /// Whether every device is still working. Fails from the moment on at which one has failed in a running
    /// output, with one inner error per device that says why; succeeds while no output runs. That the
    /// configuration itself is just switching them off is no failure.
    Kes::Result checkOutput() const;

    /// While one lives, failures of devices are reported by the results of operations only; failures that no
    /// result has reported are reported at its end. For operations that are one for the user, such as a
    /// preparation and the start after it. Lives on one thread, no longer than the configuration.
    class ToldByResults;

    /// Connects and identifies every device, and asks for its state. Fails with one inner error per device
    /// that could not be reached; the others stay connected.
    Kes::Result prepare();
    /// Switches the outputs of all devices on, at zero. When one fails, or has failed meanwhile, all are
    /// switched off again. Refused while the output runs, without devices, and for a configuration that has
    /// been replaced.
    Kes::Result startWorkingMode();
    /// Sets all outputs to zero and switches them off. Also after a failure the output counts as not running.
    /// Succeeds when the output does not run. A device that has been lost is passed over: it has switched
    /// off.
    Kes::Result stopWorkingMode();
    /// Ends the connections to all devices, after switching a running output off; fails as that does. An
    /// attempt to connect that is under way ends at once.
    Kes::Result disconnect();

    /// Arms one sequence on each device (the first on the first, ...; an empty one leaves its device out) and
    /// starts them at one moment, as the synchronisation mode in use gives it. Refused out of working mode,
    /// in a mode that does not support sequences, for several devices without synchronisation, and when a
    /// device refuses its sequence; none has started then. A device that fails meanwhile is also reported by
    /// the signals, as always while the output runs: the run has to end. See `SyncedRun` for what comes
    /// after.
    Kes::Result startSequences(const std::vector<KesDriver::OutputSequence>& sequences,
                               std::shared_ptr<SyncedRun>& run);

    /// Another configuration takes over: from now on nothing new begins. Returns at once.
    void refuse();
    /// The same, with everything switched off and disconnected for good.
    void retire();

private:
    using Kestos = std::vector<std::shared_ptr<Kesto>>;
    using Operation = std::function<Kes::Result(Kesto&)>;
    class Status;
    class Results;
    struct SyncedStart;

    explicit HardwareManager(std::shared_ptr<KesDriver::IKestoNetwork> network);

    std::vector<Kes::Result> _onEach(const Kestos& kestos, const Status& status, const Operation& operation);
    static Kes::Result _toResult(const char* key, const Kestos& kestos,
                                 const std::vector<Kes::Result>& results);
    Kes::Result _checkStart(const Kestos& kestos) const;
    bool _enterRunning(const Kestos& kestos);
    void _emitRunning(bool running);
    Kes::Result _stop();
    Kes::Result _planStart(const std::vector<KesDriver::OutputSequence>& sequences, SyncedStart& start) const;
    Kes::Result _trigger(const SyncedStart& start, const Status& status);

    void _onInserted(Kesto* kesto);
    void _onRemoved(Kesto* kesto);
    void _onReport(Kesto* kesto, const KesDriver::Report& report);

    const std::shared_ptr<KesDriver::IKestoNetwork> _network;
    KestoCollection _kestos;
    SyncManager _syncManager;
    HardwareVirtualChannels _virtualChannels;
    const std::shared_ptr<FaultStopper> _faultStopper;
    const std::unique_ptr<OperationTurn> _turn;
    std::atomic<bool> _statusReported{false};
    std::atomic<bool> _running{false};
    std::atomic<bool> _isStopping{false};
    std::atomic<bool> _isRetired{false};

    /// What `signalStatusChanged` has reported and is not over, the newest last; used under the signal gate.
    std::vector<const Status*> _statuses;
    /// By device; used under the signal gate.
    std::map<Kesto*, std::vector<Kes::ScopedConnection>> _connections;
    Kes::ScopedConnection _inserted;
    Kes::ScopedConnection _removed;
};

/// See its declaration inside the configuration.
class KES_EXPORT HardwareManager::ToldByResults {
public:
    explicit ToldByResults(HardwareManager& hardware);
    ~ToldByResults();
    ToldByResults(const ToldByResults&) = delete;
    ToldByResults& operator=(const ToldByResults&) = delete;

private:
    friend class HardwareManager;
    explicit ToldByResults(const Kestos& kestos);
    /// The result of the operation names the device, by its place in the configuration.
    void _setTold(std::size_t number);
    void _end();

    std::vector<Kesto::ToldByResult> _devices;
};

} // namespace KesDevice
