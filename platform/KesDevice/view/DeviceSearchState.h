#pragma once

#include <string>
#include <vector>

namespace KesDevice {

/// What a search in the network has led to so far. A value.
struct DeviceSearchState {
    /// A device that answers, as texts for the user.
    struct Found {
        std::string address;
        /// Type and serial number.
        std::string identity;
        /// Who uses it; empty while nobody does.
        std::string use;
        /// In the list of devices already.
        bool isTaken = false;

        bool operator==(const Found&) const = default;
    };

    bool isRunning = false;
    /// One line about the search; empty before the first one.
    std::string status;
    /// Why there may be more devices than were found; empty when all were found.
    std::string problem;
    std::vector<Found> found;
};

} // namespace KesDevice
