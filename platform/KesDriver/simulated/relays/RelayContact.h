#pragma once

#include <KesDriver/DeviceTime.h>

#include <optional>

namespace KesDriver {

/// A contact of a simulated relay, and the change of it that is on its way: a relay decides now and moves its
/// contacts after their operate time. A value, not synchronised; the relay applies the change when it is due.
struct RelayContact {
    bool isClosed = false;
    /// On the clock of the device at which the relay is wired.
    std::optional<DeviceTime> changeAt;

    /// Changes then, unless it stands so already; a change that was on its way is given up, as the coil has
    /// been switched meanwhile.
    void move(bool closed, DeviceTime at)
    {
        changeAt = isClosed == closed ? std::nullopt : std::optional(at);
    }
};

} // namespace KesDriver
