#pragma once

#include <KesCommon/Export.h>

namespace Kes {

/// The one gate through which all signals that cross threads are connected, disconnected and emitted.
///
/// It is recursive, and there is a single one in the process: a slot may emit, connect and disconnect
/// other signals in any order without the lock-order deadlocks that a gate per object would allow.
/// While the GUI thread waits for the gate it goes on serving its queue (see WaitService), so that a slot
/// on another thread that waits for the GUI thread gets its answer; and it is the next to get the gate.
///
/// Holding the gate guarantees that no slot of a gated signal is running on another thread. A receiver
/// that is destroyed (or that cuts its connections) under the gate can therefore not be called any more.
///
/// Rules: never hold another lock while emitting or connecting; never wait for another thread while
/// holding the gate, except for the GUI thread.
class KES_EXPORT SignalGate {
public:
    static void lock();
    static void unlock();
    static bool isHeldByThisThread();

    /// Holds the gate for a scope.
    class Guard {
    public:
        Guard() { lock(); }
        ~Guard() { unlock(); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
    };

    /// Lets go of the gate for a scope, however often this thread holds it; for a wait that other
    /// threads can only end by emitting.
    class KES_EXPORT Release {
    public:
        Release();
        ~Release();
        Release(const Release&) = delete;
        Release& operator=(const Release&) = delete;

    private:
        unsigned _depth;
    };
};

} // namespace Kes
