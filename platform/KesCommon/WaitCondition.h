#pragma once

#include <KesCommon/Bell.h>
#include <KesCommon/Export.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>

namespace Kes {

/// A condition variable for what another thread can only do by emitting signals or by way of the GUI thread.
///
/// While it waits, the caller releases the signal gate, however often it holds it, and the GUI thread
/// continues to serve its queue (see WaitService), so functions that others have posted may run inside the
/// wait. When the predicate holds at once, neither gate nor queue are touched. The gate comes before every
/// other lock: it is taken back without the caller's lock, and then the predicate is asked again.
///
/// `notifyAll` may be called without the lock: a predicate may also depend on what other locks guard, if
/// every change of it is followed by a notification. A thread that may destroy the condition as soon as it
/// sees the predicate hold needs the notification under the lock, as with std::condition_variable. Any
/// thread.
class KES_EXPORT WaitCondition {
public:
    using Lock = std::unique_lock<std::mutex>;
    /// Asked with the lock held, on the waiting thread.
    using Predicate = std::function<bool()>;
    using TimePoint = Bell::TimePoint;

    WaitCondition() = default;
    WaitCondition(const WaitCondition&) = delete;
    WaitCondition& operator=(const WaitCondition&) = delete;

    /// Makes all waiting threads ask their predicates again.
    void notifyAll();

    /// Returns when the predicate holds. The lock is held on entry and on return.
    void wait(Lock& lock, const Predicate& predicate);
    /// Returns when the predicate holds, at the latest at the time (later when the gate or a served function
    /// takes longer). Returns whether the predicate holds.
    bool waitUntil(Lock& lock, TimePoint end, const Predicate& predicate);
    bool waitFor(Lock& lock, std::chrono::milliseconds time, const Predicate& predicate);

private:
    void _waitReleased(Lock& lock, TimePoint end, const Predicate& predicate);

    Bell _bell;
    /// The waits of the serving thread, which sleeps on the bell of its service: several when one of them has
    /// served a function that waits here as well.
    std::atomic<int> _servingWaits{0};
};

} // namespace Kes
