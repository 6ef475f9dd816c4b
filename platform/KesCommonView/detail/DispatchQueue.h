#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace Kes {

/// The functions on their way to the GUI thread, and the file descriptor that wakes its main loop.
///
/// Everything that threads hand to each other here is ordered by the one mutex; the descriptor carries no
/// data. It is readable from the first function until the GUI thread has found the queue empty, so a flood
/// of posts costs one wake-up. With the descriptor goes the bell of `WaitService`, for a GUI thread that
/// waits. The GUI thread takes over all functions at once and runs them one at a time from a list of its own,
/// which a main loop inside one of them continues with.
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
    /// GUI thread. The oldest function; an empty one when there is none, and then the next push wakes.
    Function take();
    /// GUI thread. Drops what is queued and refuses functions from now on.
    void close();
    /// GUI thread. Accepts functions again.
    void open();

private:
    using Functions = std::vector<Function>;

    /// Whether it was needed.
    bool _wake();
    void _fallAsleep();

    const int _descriptor;
    std::mutex _mutex;
    Functions _posted;
    bool _awake = false;
    bool _open = true;
    /// The GUI thread's own, with the place of the next one. Away from the memory that the posting threads
    /// write.
    alignas(64) Functions _taken;
    std::size_t _next = 0;
};

} // namespace Kes
