#pragma once

#include <KesCommon/Export.h>
#include <KesDevice/SyncMode.h>

#include <atomic>

namespace KesDevice {

/// The synchronisation of a configuration's devices: which mode the user has chosen. It does not start
/// devices together; `HardwareManager::startSequences` does. Owned by the configuration. Any thread.
class KES_EXPORT SyncManager {
public:
    /// None at first.
    const SyncMode& getActiveMode() const { return SyncMode::get(_kind); }
    /// Takes effect at the next start of sequences. Not refused for a mode that cannot run sequences
    /// (`SyncMode::isSeqSupported`): their start is.
    void setActiveMode(SyncModeKind kind) { _kind = kind; }

private:
    std::atomic<SyncModeKind> _kind{SyncModeKind::None};
};

} // namespace KesDevice
