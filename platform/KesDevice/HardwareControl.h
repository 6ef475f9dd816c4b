#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>
#include <KesDevice/HardwareManager.h>
#include <KesDriver/IKestoNetwork.h>

#include <memory>

namespace KesDevice {

/// The process-wide hardware configuration. Any thread; nothing here but `waitForRetired` waits for a device.
///
/// In embedded mode (the program runs inside another one that lends its devices) the embedded configuration
/// stands in for the global one. The first global one is what was kept last, or else the single device at
/// 127.0.0.1: a simulated one in every process, unless the program has a network of its own. A configuration
/// that is replaced refuses to begin anything. A thread of its own switches it off, disconnects it, and
/// destroys it when nobody shares it any more; until then, a connection to one of its devices waits.
class KES_EXPORT HardwareControl {
public:
    /// A configuration was set: the current one, never null; the former still lives. On the setter's thread.
    static Kes::Signal<void(HardwareManager*)> signalHardwareChanged;

    /// The current configuration, never null. It lives until it is replaced.
    static HardwareManager* getInstance();
    /// The same, kept alive: for a thread that uses it while others may replace it.
    static std::shared_ptr<HardwareManager> share();

    /// Where new configurations find their devices: `KesDriver::getProgramNetwork()` at first.
    static std::shared_ptr<KesDriver::IKestoNetwork> getNetwork();
    /// Call it before the first configuration is asked for. Null is ignored.
    static void setNetwork(std::shared_ptr<KesDriver::IKestoNetwork> network);

    static bool getEmbeddedMode();
    /// Emits `signalHardwareChanged` when this makes another configuration the current one.
    static void setEmbeddedMode(bool embedded);

    /// Null is ignored. One that is not `temporary` is also kept for the next start of the family's programs;
    /// a failure of that is written to the log.
    static void setGlobalInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);
    /// As `setGlobalInstance`, but lent devices are never kept.
    static void setEmbeddedInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);

    /// Shares a program's own configuration, which ends as a global one with its last share. Null gives null.
    static std::shared_ptr<HardwareManager> adopt(std::unique_ptr<HardwareManager> hardware);
    /// Begins the end of such a one, when the program has replaced it. Null is ignored.
    static void retire(std::shared_ptr<HardwareManager> hardware);
    /// Returns when what was replaced is off, disconnected and, unless shared, destroyed. Not on the GUI
    /// thread.
    static void waitForRetired();

private:
    static void _replace(std::unique_ptr<HardwareManager> hardware, bool embedded);
};

} // namespace KesDevice
