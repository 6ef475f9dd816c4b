#pragma once

#include <KesCommon/Export.h>

#include <condition_variable>
#include <mutex>

namespace KesMeasure {

/// The place where the start thread waits for the device, and where everybody else wakes it. Owned by the
/// model, used by one run at a time. Any thread.
///
/// The mutex is held for moments only, never while a signal is emitted or a device is called.
class KES_EXPORT RunControl {
public:
    /// Before a run begins.
    void reset();
    /// The run is to end; the start thread wakes at once.
    void stop();
    bool isStopped() const;

    /// Guards what the predicates look at.
    std::mutex& getMutex() { return _mutex; }
    /// Wakes the start thread, to look again at what it waits for.
    void notify() { _condition.notify_all(); }

    /// Waits until the predicate, asked under the mutex, holds, the run is stopped, or the time has passed.
    /// True when the predicate holds.
    template <typename Predicate, typename Duration>
    bool waitFor(Duration limit, Predicate predicate)
    {
        std::unique_lock lock(_mutex);
        _condition.wait_for(lock, limit, [&] { return _isStopped || predicate(); });
        return predicate();
    }

    /// As `waitFor`, but a stop does not end it: for what comes soon after a stop.
    template <typename Predicate, typename Duration>
    bool waitThroughStop(Duration limit, Predicate predicate)
    {
        std::unique_lock lock(_mutex);
        return _condition.wait_for(lock, limit, predicate);
    }

private:
    mutable std::mutex _mutex;
    std::condition_variable _condition;
    bool _isStopped = false;
};

} // namespace KesMeasure
