#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>
#include <KesDevice/HardwareManager.h>
#include <KesDriver/IKestoNetwork.h>

#include <memory>

namespace KesDevice {

/// The process-wide hardware configuration. Any thread; nothing here but `waitForRetired` waits for a device.
///
/// In embedded mode (the program runs inside another one that lends its devices) the embedded
/// configuration stands in for the global one. The first global configuration is the one that was kept last,
/// or else one with a single device, the one at 127.0.0.1. Without a network of the program's own that is a
/// simulated one which exists in every process; in one, whatever serves on the same computer.
///
/// A configuration that is replaced refuses from then on to begin anything, and is switched off and
/// disconnected on a thread of its own; it is destroyed there when nobody shares it any more. Until then,
/// a connection to one of its devices waits.
class KES_EXPORT HardwareControl {
public:
    /// A configuration has been set and is installed; the argument is the current one, never null. Emitted on
    /// the thread that set it. The previous configuration is still alive during the emission.
    static Kes::Signal<void(HardwareManager*)> signalHardwareChanged;

    /// The current configuration, never null. It lives until it is replaced.
    static HardwareManager* getInstance();
    /// The same as a shared pointer, which keeps it alive: for threads that use it while others may replace
    /// it.
    static std::shared_ptr<HardwareManager> share();

    /// Where new configurations find their devices: `KesDriver::getProgramNetwork()` at first.
    static std::shared_ptr<KesDriver::IKestoNetwork> getNetwork();
    /// At the beginning of a program, before the first configuration is asked for. Null is ignored.
    static void setNetwork(std::shared_ptr<KesDriver::IKestoNetwork> network);

    static bool getEmbeddedMode();
    /// Emits `signalHardwareChanged` when this makes another configuration the current one.
    static void setEmbeddedMode(bool embedded);

    /// Replaces the configuration and emits `signalHardwareChanged`. A null one is ignored. With `temporary`
    /// false the configuration is also kept for the next start of the family's programs; a failure of that is
    /// written to the log.
    static void setGlobalInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);
    /// As `setGlobalInstance`, but lent devices are never kept.
    static void setEmbeddedInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);

    /// A configuration that lives as long as it is shared, and then ends as a global one does: for a program
    /// with a configuration of its own. Null gives null.
    static std::shared_ptr<HardwareManager> adopt(std::unique_ptr<HardwareManager> hardware);
    /// Begins the end of a configuration that a program has replaced, as that of a global one. A null one is
    /// ignored.
    static void retire(std::shared_ptr<HardwareManager> hardware);
    /// Returns when all configurations that have been replaced so far are switched off, disconnected and,
    /// unless somebody shares them, destroyed. It may wait for devices: not on the GUI thread of a program.
    static void waitForRetired();

private:
    static void _replace(std::unique_ptr<HardwareManager> hardware, bool embedded);
};

} // namespace KesDevice
