#pragma once

#include <string>

namespace KesDevice {

/// What is known of the device behind an address: nothing, a question is under way, its identity, or why
/// there is none.
enum class IdentityState { Unknown, Asking, Known, Failed };

/// One device of a configuration that is being edited, as it is shown. A value.
struct DeviceEntry {
    std::string address;
    IdentityState identityState = IdentityState::Unknown;
    /// Type and serial number, or why the device could not be identified.
    std::string identity;
    bool isAuxDCEnabled = false;
    /// As the user has typed it.
    std::string volts;
    /// Why the voltage is not accepted; empty when it is.
    std::string voltsProblem;

    bool operator==(const DeviceEntry&) const = default;
};

} // namespace KesDevice
