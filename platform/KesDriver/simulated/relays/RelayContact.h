#pragma once

#include <KesDriver/DeviceTime.h>

#include <optional>

namespace KesDriver {

/// A contact of a simulated relay, and the change of it that is on its way. A value.
struct RelayContact {
    bool isClosed = false;
    /// On the clock of the device at which the relay is wired.
    std::optional<DeviceTime> changeAt;

    /// Changes then, unless it stands so already; a change that was on its way is given up.
    void move(bool closed, DeviceTime at)
    {
        changeAt = isClosed == closed ? std::nullopt : std::optional(at);
    }
};

} // namespace KesDriver
