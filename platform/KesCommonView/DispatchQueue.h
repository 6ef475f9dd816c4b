#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <vector>

namespace Kes {

/// The functions on their way to the GUI thread, and the file descriptor that wakes its main loop.
///
/// Everything that threads hand to each other here is ordered by the one mutex; the descriptor carries no
/// data. It is readable from the first function until the GUI thread has found the queue empty, so a flood
/// of posts costs one wake-up. The GUI thread takes over all functions at once and runs them one at a time
/// from a list of its own, which a main loop inside one of them goes on with.
///
/// The functions lie in batches of a fixed size that are used again. What a thread does under the mutex is
/// short this way, whatever the length of the queue: no post moves other functions or asks for memory there.
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
    using Batch = std::vector<Function>;
    using Batches = std::list<Batch>;

    /// Holds the lock again when it returns. Without effect while the queue is closed.
    void _makeRoom(std::unique_lock<std::mutex>& lock);
    void _wake();
    void _fallAsleep();

    const int _descriptor;
    std::mutex _mutex;
    Batches _posted;
    /// Empty ones that have their memory.
    Batches _spare;
    std::size_t _postedCount = 0;
    bool _awake = false;
    bool _open = true;
    /// The GUI thread's own, with the place of the next function in the first batch. Away from the memory
    /// that the posting threads write.
    alignas(64) Batches _taken;
    std::size_t _next = 0;
    std::size_t _takenCount = 0;
};

} // namespace Kes
