#pragma once

#include <string>

/// The texts of the simulator's command line. Any thread.
namespace lng::Simulator {

/// The text for a key in the language of the process; for an unknown key the caller's own characters.
const char* get(const std::string& key);

} // namespace lng::Simulator
