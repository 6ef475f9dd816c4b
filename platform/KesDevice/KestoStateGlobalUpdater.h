#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>

#include <chrono>
#include <memory>

namespace KesDevice {

/// Asks the devices of the current configuration for their state, again and again, on a thread of its own,
/// while it is switched on and no output runs. Any thread, but switching off may wait for a device that is
/// just being asked: not on the GUI thread of a program.
class KES_EXPORT KestoStateGlobalUpdater {
public:
    static KestoStateGlobalUpdater& getInstance();

    /// Updating has been switched on or off. Emitted on the thread that switched.
    Kes::Signal<void(bool)> signalUpdatingChanged;

    /// Off at first. Switching on does nothing but write to the log when the system has no thread to give.
    /// Switching off returns when no update is under way any more, except inside a slot that an update has
    /// called.
    bool isUpdating() const;
    void setUpdating(bool updating);

    /// The time between two rounds; one second at first. Takes effect at once.
    void setInterval(std::chrono::milliseconds interval);

private:
    KestoStateGlobalUpdater();
    ~KestoStateGlobalUpdater();
    bool _startThread();
    void _run();
    void _askAll();
    bool _isWanted() const;

    struct Fields;
    const std::unique_ptr<Fields> _fields;
};

} // namespace KesDevice
