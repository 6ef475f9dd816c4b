#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace KesProgram {

/// Shows whether a file has been written or replaced meanwhile. A value. Internal to archives.
struct FileIdentity {
    dev_t device = 0;
    ino_t node = 0;
    off_t size = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    bool operator==(const FileIdentity&) const = default;

    /// Nothing when there is no file.
    static std::optional<FileIdentity> of(const std::string& path)
    {
        struct stat status;
        if (stat(path.c_str(), &status) != 0)
            return std::nullopt;
        return FileIdentity{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                            status.st_mtim.tv_nsec};
    }
};

} // namespace KesProgram
