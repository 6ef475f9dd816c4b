#pragma once

#include <deque>
#include <functional>
#include <mutex>

namespace Kes {

/// The functions on their way to the GUI thread, and the file descriptor that wakes its main loop.
///
/// Everything that threads hand to each other here is ordered by the one mutex; the descriptor carries no
/// data. It is readable from the first function until the GUI thread has found the queue empty, so a flood
/// of posts costs one wake-up. The GUI thread takes over all functions at once and runs them one at a time
/// from a list of its own, which a main loop inside one of them goes on with.
class DispatchQueue {
public:
    using Function = std::function<void()>;

    DispatchQueue();
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    /// To poll for input.
    int getDescriptor() const { return _descriptor; }

    /// Any thread. False, and nothing is queued, while the queue is closed.
    bool push(Function&& function);
    /// GUI thread. The oldest function; an empty one when there is none.
    Function take();
    /// GUI thread. The number of functions at this moment.
    std::size_t size();
    /// GUI thread. Drops what is queued and refuses functions from now on.
    void close();
    /// GUI thread. Accepts functions again.
    void open();

private:
    void _wake();
    void _fallAsleep();

    const int _descriptor;
    std::mutex _mutex;
    std::deque<Function> _posted;
    bool _awake = false;
    bool _open = true;
    /// The GUI thread's own.
    std::deque<Function> _taken;
};

} // namespace Kes
