#pragma once

#include <KesCommon/Export.h>

#include <functional>

namespace Kes {

/// What a thread that serves a queue goes on doing while it has to wait for another thread.
///
/// The GUI thread must not simply block on a worker that itself waits for the GUI thread: both would
/// stand still. The GUI dispatcher installs its drain function here, and every wait of the family's
/// libraries that may happen on the GUI thread calls `serve()` until what it waits for has come.
class KES_EXPORT WaitService {
public:
    /// Makes the calling thread the serving one. `serve` runs what is queued and returns at once.
    static void install(std::function<void()> serve);
    /// Called on the serving thread, before it ends; does nothing on any other.
    static void uninstall();

    /// Any thread: whether the caller is the serving thread.
    static bool isServingThread();

    /// Runs what is queued when called on the serving thread; does nothing on any other.
    static void serve();
};

} // namespace Kes
