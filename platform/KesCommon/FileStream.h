#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <fstream>
#include <ios>
#include <istream>
#include <optional>
#include <string>

/// Opens files whose name is UTF-8 (or any other bytes). A failure shows in the stream's state. Any thread.
namespace Kes {

/// Regular files only: reading a folder fails late, and a pipe or a device may never answer.
KES_EXPORT std::ifstream openInputFileUTF8Name(const std::string& path,
                                               std::ios_base::openmode mode = std::ios::in);

/// What is left in the stream; nothing when that is more than so many bytes.
KES_EXPORT std::optional<std::string> readAtMost(std::istream& stream, std::size_t bytes);

/// Truncates an existing file unless the mode says otherwise. A pipe fails: opening one would wait for
/// somebody to read it.
KES_EXPORT std::ofstream openOutputFileUTF8Name(const std::string& path,
                                                std::ios_base::openmode mode = std::ios::out);

} // namespace Kes
