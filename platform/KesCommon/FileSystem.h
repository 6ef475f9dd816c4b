#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <string>
#include <string_view>

/// Questions to and changes of the file system, by path. Any thread.
namespace Kes {

/// Creates the folder and its missing parents. True when the folder exists afterwards.
KES_EXPORT bool mkdir_with_parents(const std::string& path);

/// Whether there is an entry of any kind at the path (a link counts by what it points to).
KES_EXPORT bool fileExist(const std::string& path);

/// The bytes of a file; empty when it cannot be opened, or not be read to its end.
KES_EXPORT std::string readWholeFile(const std::string& path);

/// Gives the file new contents, whole or not at all: after a failure the old contents are still there.
/// A link keeps pointing to the file, which keeps its permissions. What is not a regular file (a device,
/// a pipe) is simply written to; a pipe that nobody reads is an error.
KES_EXPORT Result writeWholeFile(const std::string& path, std::string_view contents);

} // namespace Kes
