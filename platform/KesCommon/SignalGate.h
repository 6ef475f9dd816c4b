#pragma once

#include <KesCommon/Export.h>

#include <thread>

namespace Kes {

/// The one gate through which all signals that cross threads are emitted.
///
/// It is recursive, and there is a single one in the process: a slot may emit other signals in any order
/// without the lock-order deadlocks that a gate per object would allow. While the GUI thread waits for the
/// gate it continues to serve its queue (see WaitService), so that a slot on another thread that waits for
/// the GUI thread gets its answer; and it is the next to get the gate.
///
/// While the gate is held, no other thread emits: nothing that only slots and emitters change does change,
/// and reading it and connecting are one step. A slot on another thread may still be in the middle of a wait
/// for which it has let go of the gate; that a receiver is not called any more is therefore the promise of
/// `Connection::disconnect`, not of the gate.
///
/// Rules: never hold another lock while emitting, disconnecting or destroying a receiver; wait for another
/// thread with `WaitCondition` or `Worker::wait`, which let go of the gate, or in the scope of a `Release`;
/// only a wait for the GUI thread keeps it (see `Loan`).
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

    /// Releases the gate for a scope, however often this thread holds it; for a wait that other
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

    /// The gate of a thread that waits for a function to run on another thread. What the function does
    /// belongs to what the waiting thread does, so it runs with that thread's gate: it may connect, emit
    /// and take the gate although the waiting thread still holds it.
    class KES_EXPORT Loan {
    public:
        /// On the waiting thread, which has nothing to lend when it does not hold the gate. Outlives `Use`.
        Loan();
        Loan(const Loan&) = delete;
        Loan& operator=(const Loan&) = delete;

        /// On the other thread, for as long as the waiting one waits for the function.
        class KES_EXPORT Use {
        public:
            explicit Use(Loan& loan);
            ~Use();
            Use(const Use&) = delete;
            Use& operator=(const Use&) = delete;

        private:
            Loan& _loan;
        };

    private:
        std::thread::id _lender;
        unsigned _depth = 0;
    };
};

} // namespace Kes
