#pragma once

#include <KesCommon/Export.h>

#include <chrono>
#include <optional>
#include <string>

namespace Kes {

/// Owns a lock file: no other `FileLock`, of this process or another one, has the same one meanwhile. The
/// lock ends with the object and with the process, however that ends; the file itself stays.
///
/// Locks bind only those who ask for them. A value that moves. Any thread.
class KES_EXPORT FileLock {
public:
    /// Makes the file when it is missing; its folder must exist. Nothing when another has the lock, or when
    /// the file cannot be made or locked.
    static std::optional<FileLock> tryTake(const std::string& path);
    /// As `tryTake`; while another has the lock it is asked again until the time is over.
    static std::optional<FileLock> takeWithin(const std::string& path, std::chrono::milliseconds time);

    ~FileLock();
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;

    /// Removes the lock file and gives up the lock.
    void removeFile();

private:
    FileLock(std::string path, int file);
    static std::optional<FileLock> _take(const std::string& path, bool& isHeld);
    void _release();

    std::string _path;
    int _file;
};

} // namespace Kes
