#pragma once

#include <filesystem>

namespace Kes {

/// The folder of this library's file, with links resolved: on a system whose "/lib" is a link, the loader may
/// have come through it, and what lies relative to the library would be looked for in the wrong place.
/// Whoever stands between the library and the loader, as tools that follow memory do, changes nothing.
/// Empty when it cannot be found. Any thread.
std::filesystem::path getOwnLibraryFolder();

} // namespace Kes
