#pragma once

#include <KesCommon/Export.h>

#include <cstdint>
#include <optional>
#include <string>

namespace KesProgram {

/// The bytes of an archive that is not saved, and what a user has to know of them. A value.
struct KES_EXPORT RecoveryCopy {
    /// The program's name.
    std::string program;
    /// The path of the file that the work belongs to; empty: it has never been in one.
    std::string fileName;
    /// What it holds, for the user, such as "8 results of 2026-11-20 14:05, not saved".
    std::string holds;
    /// When it was made, in seconds since 1970, UTC.
    std::int64_t time = 0;
    /// The whole content of an archive file.
    std::string bytes;

    bool operator==(const RecoveryCopy&) const = default;

    /// The content of the file in which a copy is kept: description, bytes, and a checksum over both.
    std::string toFile() const;
    /// Nothing when the content is not that of such a file, or not all of it.
    static std::optional<RecoveryCopy> fromFile(const std::string& content);
};

} // namespace KesProgram
