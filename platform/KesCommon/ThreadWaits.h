#pragma once

#include <KesCommon/Export.h>

#include <thread>

namespace Kes {

class WaitCondition;

/// Which thread waits for which at this moment, so that a wait which would close a circle can be left out.
///
/// `Worker::wait` waits for the worker's thread, a cut of a connection for the thread on which the slot runs,
/// and a caller of `ApplicationDispatcher::wait` for the GUI thread from the moment its function begins to
/// run there (before that, the GUI thread gets to it in whatever wait it is). Others declare their waits with
/// `WaitingFor`. Any thread.
class KES_EXPORT ThreadWaits {
public:
    /// Whether the first thread waits for the second one, directly or through others.
    static bool isWaitingFor(std::thread::id waiting, std::thread::id awaited);

    /// Notified whenever a thread begins to wait for another. A wait whose predicate asks this class waits
    /// here, with a lock of its own, and what else the predicate depends on notifies it too.
    static WaitCondition& getCondition();

    /// The calling thread is about to end: nobody waits for it any more. The system may give its id to a new
    /// thread before those that have waited for it continue.
    static void endThread();

    /// Declares for its scope that a thread waits for another one.
    ///
    /// For a wait that gives way when it would close a circle:
    ///
    ///     ThreadWaits::WaitingFor waiting;
    ///     ThreadWaits::getCondition().wait(lock,
    ///                                      [&] { return !_isRunningOn(thread) || !waiting.trySet(thread);
    ///                                      });
    class KES_EXPORT WaitingFor {
    public:
        /// Declares nothing yet.
        WaitingFor();
        /// A wait that must happen in any case. `waiting`: the thread that waits, when another one declares
        /// it.
        explicit WaitingFor(std::thread::id awaited, std::thread::id waiting = std::this_thread::get_id());
        ~WaitingFor();
        WaitingFor(const WaitingFor&) = delete;
        WaitingFor& operator=(const WaitingFor&) = delete;

        /// Waits for this thread now instead of the one so far, unless it is the caller or is itself waiting
        /// for the caller: then false, and nothing is declared any more.
        bool trySet(std::thread::id awaited);

    private:
        friend class ThreadWaits;
        std::thread::id _waiting;
        std::thread::id _awaited;
    };

    /// What the calling thread does for its scope, a function served inside a wait, does not wait for what
    /// that wait waits for.
    class KES_EXPORT Serving {
    public:
        Serving();
        ~Serving();
        Serving(const Serving&) = delete;
        Serving& operator=(const Serving&) = delete;

    private:
        WaitingFor _barrier;
        bool _isNeeded;
    };

private:
    class Registry;
    static Registry& _registry();
};

} // namespace Kes
