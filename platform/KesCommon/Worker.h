#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Kes {

/// A thread with an owner. Every thread, the GUI thread included, can wait for its end.
///
/// The work may emit signals and wait for the GUI thread until its end: a wait for it lets go of the signal
/// gate and continues to serve the GUI thread's queue (see WaitCondition), so functions that others have
/// posted may run inside, and may even wait for the same worker or destroy it. What the work throws goes to
/// the log. What it has captured is destroyed on the worker thread before the work counts as ended.
///
/// `isRunning` and `wait` on any thread; moved and destroyed by the owner.
class KES_EXPORT Worker {
public:
    /// No thread: nothing to wait for.
    Worker();
    /// Starts the work on a thread of this name (see ThreadHelper::setCurrentThreadName).
    /// Throws std::system_error when the system has no thread to give.
    Worker(const std::string& threadName, std::function<void()> work);
    /// The same, but for a system without a thread to give: that is written to the log, and there is no
    /// worker.
    static std::optional<Worker> tryStart(const std::string& threadName, std::function<void()> work);
    /// Waits for the work. From inside the work: returns, and the thread ends by itself.
    ~Worker();
    Worker(Worker&& other) noexcept;
    /// Waits for the present work as the destructor does.
    Worker& operator=(Worker&& other) noexcept;

    /// False once the work has returned, and without any.
    bool isRunning() const;

    /// Returns when the work has returned and its thread has ended; at once from inside the work.
    void wait();

private:
    class Thread;
    void _leave();

    std::shared_ptr<Thread> _thread;
};

} // namespace Kes
