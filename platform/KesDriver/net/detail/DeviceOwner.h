#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace KesDriver {

/// The controller of a device, as the device reports it; both are empty without one. Clean it before it is
/// shown.
struct DeviceOwner {
    std::string name;
    std::string address;
};

/// Reads the answer to `SYSTem:CONTrol:OWNer?`.
std::optional<DeviceOwner> readOwner(std::string_view answer);

} // namespace KesDriver
