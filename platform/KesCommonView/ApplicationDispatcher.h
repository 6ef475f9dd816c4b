#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <memory>

namespace Kes {

/// The queue of functions that other threads want run on the GUI thread.
///
/// One first-in-first-out queue, drained by one main-loop source in slices of about 2 ms between events
/// and redraws, so a flood of posts delays a frame but never freezes the window; many posts cost one
/// wake-up. A function may run a dialog's own loop; the queue continues meanwhile.
///
/// The dispatcher is also the service of `WaitService`: while the GUI thread waits (see WaitCondition),
/// queued functions run inside that wait, and one that is queued meanwhile wakes it.
class KES_EXPORT ApplicationDispatcher {
public:
    /// Any thread. Lives until the process ends.
    static ApplicationDispatcher& getInstance();

    /// Any thread. Queues the function and returns at once. Before registration the function stays queued;
    /// after the end of it the function is dropped. What the function throws goes to the log.
    void begin(std::function<void()> function);

    /// Any thread. On the GUI thread the function runs at once. On another thread it is queued and waited
    /// for; the wait also ends, without the function having run, when the dispatcher is unregistered.
    /// What the function throws is thrown to the caller in both cases. A caller that holds the signal gate
    /// keeps it, and the function runs with it. While it runs the caller waits for the GUI thread in the
    /// sense of `ThreadWaits`.
    void wait(std::function<void()> function);

    /// Any thread: whether the caller is the thread that registered.
    bool isGuiThread() const;

    ApplicationDispatcher(const ApplicationDispatcher&) = delete;
    ApplicationDispatcher& operator=(const ApplicationDispatcher&) = delete;

private:
    friend class ApplicationDispatcherPresenter;
    ApplicationDispatcher();
    ~ApplicationDispatcher();
    void _register();
    void _unregister();

    class Queue;
    std::unique_ptr<Queue> _queue;
};

/// Ties the dispatcher to the thread that runs the main loop. GUI thread.
class KES_EXPORT ApplicationDispatcherPresenter {
public:
    static ApplicationDispatcherPresenter& getInstance();

    /// Makes the calling thread the GUI thread of the dispatcher. Further calls on it change nothing.
    void registerDispatcher();
    /// Stops the dispatcher; every waiting thread is released. What is still queued is dropped.
    void unregisterDispatcher();
};

} // namespace Kes
