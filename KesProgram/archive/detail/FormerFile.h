#pragma once

#include <string>

namespace KesProgram {

/// What a file held before it is overwritten in place. A place of its own beside the file is the last resort,
/// for when no recovery copy can be kept. Internal to archives.
struct FormerFile {
    /// The file's bytes; empty when it holds none, cannot be read, or is too large to be an archive.
    static std::string read(const std::string& path);
    /// Writes them to a new file "<path>.former", with a number behind it when there is one. Returns its
    /// path, empty when it could not be written.
    static std::string keepBeside(const std::string& path, const std::string& bytes);
};

} // namespace KesProgram
