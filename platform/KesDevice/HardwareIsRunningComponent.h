#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>

#include <atomic>

namespace KesDevice {

/// Whether the output of any configuration in the process runs. Any thread.
class KES_EXPORT HardwareIsRunningComponent {
public:
    /// The only one; lives as long as the process.
    static HardwareIsRunningComponent& getInstance();

    /// Emitted on the thread that started or stopped the output; the argument is the new `isRunning()`.
    Kes::Signal<void(bool)> signalRunningChanged;

    /// True while the output of at least one configuration runs.
    bool isRunning() const { return _count > 0; }

private:
    friend class HardwareManager;
    HardwareIsRunningComponent() = default;
    void _changeCount(int by);

    std::atomic<int> _count{0};
};

} // namespace KesDevice
