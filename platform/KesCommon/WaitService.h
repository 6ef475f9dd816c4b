#pragma once

#include <KesCommon/Bell.h>
#include <KesCommon/Export.h>

#include <functional>

namespace Kes {

/// What the GUI thread continues to do while it waits: it must not block on a worker that itself waits for
/// the GUI thread. The GUI dispatcher installs here how its queue is served, and every wait of the family's
/// libraries (`WaitCondition`, `SignalGate`, `Worker`) serves it on the GUI thread until what it waits for
/// has come. Between two looks the thread sleeps; it is woken by `ring`.
class KES_EXPORT WaitService {
public:
    /// Runs what is queued, or a part of it, and returns whether there was anything. When there was nothing,
    /// what is queued next has to ring.
    using Serve = std::function<bool()>;

    /// Makes the calling thread the serving one.
    static void install(Serve serve);
    /// On the serving thread, before it ends; does nothing on any other. A wait that is still on the stack
    /// becomes one of an ordinary thread.
    static void uninstall();

    /// Any thread: whether the caller is the serving thread.
    static bool isServingThread();

    /// Any thread: wakes the serving thread from a wait, to look again. On that thread it does nothing.
    static void ring();

    /// For waits. On the serving thread it serves, and returns whether there was anything; else false.
    static bool serve();
    /// For waits on the serving thread: what `ring` rings.
    static const Bell& getBell();
};

} // namespace Kes
