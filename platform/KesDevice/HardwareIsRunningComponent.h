#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>

#include <atomic>

namespace KesDevice {

/// Whether the output of any configuration in the process runs, whichever part of the program has started it:
/// for what has to wait until the outputs are off. Configurations report here by themselves. Any thread.
class KES_EXPORT HardwareIsRunningComponent {
public:
    /// The only one; lives as long as the process.
    static HardwareIsRunningComponent& getInstance();

    /// Emitted on the thread that started or stopped the output; the argument is the new `isRunning()`.
    Kes::Signal<void(bool)> signalRunningChanged;

    /// True while the output of at least one configuration runs. It changes before the signal, so that a slot
    /// finds the new value.
    bool isRunning() const { return _count > 0; }

private:
    friend class HardwareManager;
    HardwareIsRunningComponent() = default;
    void _changeCount(int by);

    std::atomic<int> _count{0};
};

} // namespace KesDevice
