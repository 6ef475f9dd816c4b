#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace lng::Measure {

/// The text of the measuring libraries for a key, in the language of the process. An unknown key is returned
/// itself, as the caller's own character data. Any thread.
KES_EXPORT const char* get(const std::string& key);

} // namespace lng::Measure
