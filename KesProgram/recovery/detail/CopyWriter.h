#pragma once

#include <KesCommon/Worker.h>
#include <KesProgram/archive/DataSnapshot.h>
#include <KesProgram/recovery/RecoveryStore.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace KesProgram {

/// The thread "KesProgram_Copy" that packs snapshots and writes them into the store. Of several that wait
/// only the last one is written. Any thread. Internal to recovery.
class CopyWriter {
public:
    explicit CopyWriter(RecoveryStore& store);
    /// Writes what still waits.
    ~CopyWriter();
    CopyWriter(const CopyWriter&) = delete;
    CopyWriter& operator=(const CopyWriter&) = delete;

    /// `description`: the copy without its bytes.
    void write(DataSnapshot snapshot, RecoveryCopy description);
    /// Has the copy removed in its turn.
    void remove();
    /// Nothing waits any more; returns when nothing is being written either.
    void cancel();
    /// Waits until all is written. False when the time is over or the last copy could not be written.
    bool waitFor(std::chrono::milliseconds time);
    /// False when the last copy could not be written.
    bool isGood() const { return _isGood; }

private:
    struct Task {
        /// Without data: the copy is to be removed.
        DataSnapshot snapshot;
        RecoveryCopy copy;
    };

    void _hand(Task task);
    void _run();
    bool _write(Task task);

    RecoveryStore& _store;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::optional<Task> _waiting;
    bool _isWriting = false;
    std::atomic<bool> _isGood{true};
    bool _isEnding = false;
    bool _hasThread = false;
    Kes::Worker _thread;
};

} // namespace KesProgram
