#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace KesDriver {

/// Who controls a device, as the device tells; both are empty while nobody does. Not to be shown as it is.
struct DeviceOwner {
    std::string name;
    std::string address;
};

/// Reads the answer to `SYSTem:CONTrol:OWNer?`.
std::optional<DeviceOwner> readOwner(std::string_view answer);

} // namespace KesDriver
