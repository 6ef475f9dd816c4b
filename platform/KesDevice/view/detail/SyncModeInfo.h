#pragma once

#include <KesCommonView/IView.h>
#include <KesDevice/SyncMode.h>

/// The explanation of a synchronisation mode. GUI thread.
namespace KesDevice::SyncModeInfo {

/// Whether there is something to explain.
bool has(const SyncMode& mode);

/// Shows the explanation over the parent's window and returns when it is closed; does nothing without one.
void show(const SyncMode& mode, Kes::IView* parent);

} // namespace KesDevice::SyncModeInfo
