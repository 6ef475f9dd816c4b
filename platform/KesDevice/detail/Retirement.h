#pragma once

#include <KesDevice/HardwareManager.h>

#include <memory>

/// The end of configurations, off the thread that replaces or releases them: it may be the GUI thread, and
/// a device that does not answer takes its time. Any thread.
namespace KesDevice::Retirement {

/// Takes the configuration over. When its last user lets go of it, it is destroyed on a thread of its own.
std::shared_ptr<HardwareManager> share(std::unique_ptr<HardwareManager> hardware);

/// Has the configuration switched off and disconnected; returns at once. Until that is done, nobody connects
/// to its devices.
void begin(std::shared_ptr<HardwareManager> hardware);

/// Returns when all that has begun by now has ended.
void wait();

/// The same, for good: from then on configurations end where they are released.
void finish();

} // namespace KesDevice::Retirement
