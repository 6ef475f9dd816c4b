#pragma once

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <cstddef>
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

/// Where devices are added, by address or from a search. GUI thread.
class KES_EXPORT IDeviceSearchView : public Kes::IView {
public:
    sigc::signal<void()> signalAdd;
    sigc::signal<void()> signalAddressEdited;
    sigc::signal<void()> signalSearch;
    /// The argument is the place in the list of what was found.
    sigc::signal<void(std::size_t)> signalAddFound;

    /// What is typed in the address field.
    virtual std::string getAddress() const = 0;
    virtual void clearAddress() = 0;
    virtual void focusAddress() = 0;
    /// Why the address is refused; empty when it is not.
    virtual void setProblem(const std::string& problem) = 0;
    virtual void setSearch(const DeviceSearchState& state) = 0;
};

} // namespace KesDevice
