#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/FileLock.h>
#include <KesCommon/Result.h>
#include <KesProgram/recovery/LostWork.h>
#include <KesProgram/recovery/RecoveryCopy.h>

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace KesProgram {

/// The folder in which all instances of one program keep copies of unsaved work, each with a lock of its own.
///
/// A copy is in the folder whole or not at all: the old one stays until the new one is on the disk. It
/// outlives the object and the process. An instance owns at most one copy of each kind, and by its lock the
/// others see that it is running; the next instance takes over what it leaves behind.
/// Broken files and those of others are passed over. Any thread.
class KES_EXPORT RecoveryStore {
public:
    enum class Kind {
        /// The data in the window.
        Work,
        /// What was in the file that is being overwritten.
        Former
    };

    /// How long a copy that nobody wants is kept.
    static constexpr std::chrono::days longestStay{30};

    /// The folder is made by the first `write`.
    explicit RecoveryStore(std::string folder);
    ~RecoveryStore();
    RecoveryStore(const RecoveryStore&) = delete;
    RecoveryStore& operator=(const RecoveryStore&) = delete;

    /// Replaces this instance's copy of the kind. When it returns a success, the copy survives a power cut.
    Kes::Result write(Kind kind, const RecoveryCopy& copy);
    /// Removes this instance's copy of the kind, if there is one.
    void remove(Kind kind);
    /// This instance's copy of the kind; nothing when there is none.
    std::optional<RecoveryCopy> read(Kind kind) const;
    /// Gives up the copy of the kind without removing it: it is for the next start.
    void setAside(Kind kind);

    /// The copies without a running owner, newest first; of each owner `Work` before `Former`. A copy that is
    /// identical to its file has been saved and is removed.
    std::vector<LostWork> findLost();
    /// The copies are this instance's from now on; those that it had are given up.
    void adopt(LostWork work);
    /// Moves here what the program of that name has left in the other store's folder, as far as no owner
    /// lives: former versions kept the copies of several programs in one folder.
    void takeOver(RecoveryStore& shared, const std::string& program);
    /// Removes the copies without a living owner that are older than `longestStay`.
    void removeOutdated(std::chrono::system_clock::time_point now);

private:
    std::string _path(const std::string& session, Kind kind) const;
    std::string _lockPath(const std::string& session) const;
    std::vector<std::string> _listSessions() const;
    std::optional<Kes::FileLock> _tryTake(const std::string& session) const;
    bool _hasCopies(const std::string& session) const;
    std::string _findProgram(const std::string& session) const;
    void _removeWhenEmpty(const std::string& session, Kes::FileLock lock) const;
    void _release();
    bool _makeFolder() const;
    bool _begin();

    const std::string _folder;
    mutable std::mutex _mutex;
    std::string _session;
    std::optional<Kes::FileLock> _lock;
};

} // namespace KesProgram
