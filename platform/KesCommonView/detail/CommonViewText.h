#pragma once

#include <string>

/// The texts that this library itself shows to the user. Any thread.
namespace lng::CommonView {

/// The text for a key in the language of the process; for an unknown key the caller's own characters.
const char* get(const std::string& key);

} // namespace lng::CommonView
