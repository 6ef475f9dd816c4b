#pragma once

#include <KesCommon/Export.h>

#include <string>

/// The texts that drivers and devices' own words are made of. Any thread.
namespace lng::Driver {

/// The text for a key in the language of the process; for an unknown key the caller's own characters.
KES_EXPORT const char* get(const std::string& key);

} // namespace lng::Driver
