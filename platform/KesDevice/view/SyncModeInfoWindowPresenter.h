#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesDevice/HardwareManager.h>

namespace KesDevice {

/// Explains the active synchronisation mode of a configuration. GUI thread.
class KES_EXPORT SyncModeInfoWindowPresenter {
public:
    /// Whether there is something to explain.
    static bool hasInfo(HardwareManager* hardware);

    /// Shows the explanation over the parent's window and returns when it is closed.
    void show(HardwareManager* hardware, Kes::IView* parent = nullptr);
};

} // namespace KesDevice
