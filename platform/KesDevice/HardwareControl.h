#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>
#include <KesDevice/HardwareManager.h>

#include <memory>

namespace KesDevice {

/// The process-wide hardware configuration. Any thread.
///
/// In embedded mode (the program runs inside another one that lends its devices) the embedded
/// configuration stands in for the global one. The first global configuration holds one simulated device.
class KES_EXPORT HardwareControl {
public:
    /// Another configuration has become the current one; the argument is never null. Emitted on the thread that
    /// set it. The previous configuration is still alive during the emission.
    static Kes::Signal<void(HardwareManager*)> signalHardwareChanged;

    /// The current configuration, never null. It lives until it is replaced, and then until it is no
    /// longer busy.
    static HardwareManager* getInstance();

    static bool getEmbeddedMode();
    static void setEmbeddedMode(bool embedded);

    /// Replaces the configuration and emits `signalHardwareChanged`. A null one is ignored. With `temporary`
    /// false the configuration is also kept for the next start of the family's programs.
    static void setGlobalInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);
    static void setEmbeddedInstance(std::unique_ptr<HardwareManager> hardware, bool temporary);
};

} // namespace KesDevice
