#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/FileLock.h>
#include <KesProgram/recovery/RecoveryCopy.h>

#include <string>

namespace KesProgram {

/// A copy that an instance of the program has left behind when it ended, with the lock that its owner had:
/// as long as this object lives, no other instance offers or deletes the copy. It stays where it is unless it
/// is thrown away. Made by `RecoveryStore`. GUI thread.
class KES_EXPORT LostWork {
public:
    /// For `RecoveryStore`. `session`: the instance that made the copy; `file`: the path of the copy.
    LostWork(Kes::FileLock lock, std::string session, std::string file, RecoveryCopy copy);
    ~LostWork();
    LostWork(LostWork&&) noexcept;
    LostWork& operator=(LostWork&&) noexcept;

    const RecoveryCopy& getCopy() const { return _copy; }
    /// Whether another program has written the file of this work after the copy was made. (The owner of the
    /// copy keeps the former content whenever it writes.)
    bool isFileNewer() const;
    /// Deletes the copy for ever; only after the user has said so. A failure goes unnoticed: the copy is then
    /// offered again at the next start.
    void throwAway();

private:
    friend class RecoveryStore;

    Kes::FileLock _lock;
    std::string _session;
    std::string _file;
    RecoveryCopy _copy;
};

} // namespace KesProgram
