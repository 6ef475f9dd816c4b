#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>

namespace KesDevice {

/// Lets long operations on one object happen one after the other.
///
/// Unlike a mutex it may be held while signals are emitted: whoever waits for it lets go of the signal gate
/// and serves the GUI thread's queue. A thread that has the turn gets it again at once. Any thread.
class OperationTurn {
    /// One turn that a thread has. Linked through the scopes on the thread's stack, since the last operations
    /// happen at the end of the process, when thread-local objects are gone.
    class Mine {
    public:
        explicit Mine(const OperationTurn& turn);
        ~Mine();
        Mine(const Mine&) = delete;
        Mine& operator=(const Mine&) = delete;

        static bool isHeld(const OperationTurn& turn);

    private:
        const OperationTurn& _turn;
        const Mine* const _previous;
    };

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
        /// None for a scope inside another one of the same turn.
        std::optional<Mine> _mine;
    };

    /// For a thread that works for the one that has the turn, while that waits for it: it has the turn as
    /// well.
    class Share {
    public:
        explicit Share(const OperationTurn& turn) : _mine(turn) {}

    private:
        Mine _mine;
    };

    bool isTaken() const;

private:
    mutable std::mutex _mutex;
    std::condition_variable _freed;
    bool _taken = false;
};

} // namespace KesDevice
