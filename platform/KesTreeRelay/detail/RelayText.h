#pragma once

#include <string>

/// The texts of the relay nodes. Any thread.
namespace lng::TreeRelay {

/// The text for a key in the language of the process; for an unknown key the caller's own characters.
const char* get(const std::string& key);

} // namespace lng::TreeRelay
