#pragma once

#include <KesCommon/WaitCondition.h>

#include <mutex>
#include <thread>

namespace KesDevice {

/// Orders long operations on one object one after the other.
///
/// Unlike a mutex it may be held while signals are emitted: a thread that waits for it releases the signal
/// gate and serves the GUI thread's queue. A thread that has the turn gets it again at once. Shares the
/// owner's turn with a helper thread while the owner waits for that thread. Any thread.
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
        /// False for a scope inside another one of the same turn.
        bool _isOwn = false;
    };

    bool isTaken() const;

private:
    mutable std::mutex _mutex;
    /// No thread while nobody has the turn.
    std::thread::id _owner;
};

} // namespace KesDevice
