#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>
#include <KesDevice/HardwareManager.h>

#include <memory>
#include <vector>

namespace KesDevice {

/// The process-wide hardware configuration. Any thread.
///
/// In embedded mode (the program runs inside another one that lends its devices) the embedded
/// configuration stands in for the global one. The first global configuration is the one that was kept last,
/// or else one with a single simulated device; that device exists in every process, in the simulated network.
class KES_EXPORT HardwareControl {
public:
    /// A configuration has been set and is installed; the argument is the current one, never null. Emitted on
    /// the thread that set it. The previous configuration is still alive during the emission.
    static Kes::Signal<void(HardwareManager*)> signalHardwareChanged;

    /// The current configuration, never null. It lives until it is replaced. From then on its outputs and
    /// connections are off and it refuses to begin anything; it is destroyed some replacements later, when it
    /// is not busy, so that a thread that is just using it fails in peace.
    static HardwareManager* getInstance();

    /// Where the simulated device is: 127.0.0.1.
    static Kesto::Address getSimulatedAddress();

    static bool getEmbeddedMode();
    /// Emits `signalHardwareChanged` when this makes another configuration the current one.
    static void setEmbeddedMode(bool embedded);

    /// Switches a running output of the present configuration off, replaces the configuration, and emits
    /// `signalHardwareChanged`. A null one is ignored. With `temporary` false the configuration
    /// is also kept for the next start of the family's programs; a failure of that is written to the log.
    static void setGlobalInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);
    /// As `setGlobalInstance`, but lent devices are never kept.
    static void setEmbeddedInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);

    /// Takes over a program's own configuration that has been replaced. Its life ends as that of a global one
    /// does; see `getInstance`. A null one is ignored.
    static void retire(std::unique_ptr<HardwareManager> hardware);

private:
    friend class KestoStateGlobalUpdater;

    static void _replace(std::unique_ptr<HardwareManager> hardware, bool embedded);
    /// The current configuration's devices, kept alive through any replacement.
    static std::vector<std::shared_ptr<Kesto>> _leaseKestos();
};

} // namespace KesDevice
