#pragma once

#include <string>

/// The texts of the device windows. Any thread.
namespace lng::DeviceView {

/// The text for a key in the language of the process; for an unknown key the caller's own characters.
const char* get(const std::string& key);

} // namespace lng::DeviceView
