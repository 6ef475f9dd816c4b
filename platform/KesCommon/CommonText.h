#pragma once

#include <KesCommon/Export.h>

#include <string>

/// The texts that this library itself shows to the user. Any thread.
namespace lng::Common {

/// The text for a key in the language of the process; for an unknown key the caller's own characters.
KES_EXPORT const char* get(const std::string& key);

} // namespace lng::Common
