#pragma once

#include <condition_variable>
#include <mutex>
#include <vector>

namespace KesDevice {

/// Lets long operations on one object happen one after the other.
///
/// Unlike a mutex it may be held while signals are emitted: whoever waits for it lets go of the signal gate and
/// serves the GUI thread's queue. A thread that has the turn gets it again at once. Any thread.
class OperationTurn {
public:
    /// Takes the turn for a scope.
    class Hold {
    public:
        explicit Hold(OperationTurn& turn);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        OperationTurn& _turn;
    };

    /// For a thread that works for the one that has the turn, while that waits for it: it has the turn as well.
    class Share {
    public:
        explicit Share(const OperationTurn& turn);
        ~Share();
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;
    };

    bool isTaken() const;

private:
    bool _isMine() const;

    mutable std::mutex _mutex;
    std::condition_variable _freed;
    bool _taken = false;
    static thread_local std::vector<const OperationTurn*> _mine;
};

} // namespace KesDevice
