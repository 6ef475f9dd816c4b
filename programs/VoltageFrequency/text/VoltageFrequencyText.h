#pragma once

#include <string>

namespace lng::VoltageFrequency {

/// The text of the program for a key, in the language of the process. An unknown key is returned itself,
/// as the caller's own character data. Any thread.
const char* get(const std::string& key);

} // namespace lng::VoltageFrequency
