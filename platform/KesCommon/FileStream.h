#pragma once

#include <KesCommon/Export.h>

#include <fstream>
#include <ios>
#include <string>

/// Opens files whose name is UTF-8 (or any other bytes). A failure shows in the stream's state. Any thread.
namespace Kes {

/// Regular files only: reading a folder fails late, and a pipe or a device may never answer.
KES_EXPORT std::ifstream openInputFileUTF8Name(const std::string& path,
                                               std::ios_base::openmode mode = std::ios::in);

/// Truncates an existing file unless the mode says otherwise.
KES_EXPORT std::ofstream openOutputFileUTF8Name(const std::string& path,
                                                std::ios_base::openmode mode = std::ios::out);

} // namespace Kes
