#pragma once

#include <KesDevice/view/DeviceWidgets.h>
#include <KesDevice/view/IDeviceSearchView.h>

#include <gtkmm/entry.h>
#include <gtkmm/spinner.h>

#include <memory>
#include <vector>

namespace KesDevice {

/// An address field with its commands, and what the search has found below. GUI thread.
class KES_EXPORT DeviceSearchView : public Gtk::Box, public IDeviceSearchView {
public:
    DeviceSearchView();
    ~DeviceSearchView() override;

    std::string getAddress() const override;
    void clearAddress() override;
    void focusAddress() override;
    void setProblem(const std::string& problem) override;
    void setSearch(const DeviceSearchState& state) override;

private:
    class FoundRow;

    void _buildAddress();
    void _buildSearch();
    void _onActivate();

    PartHeading _heading;
    Gtk::Label _label;
    Gtk::Entry _address;
    Gtk::Button _add;
    Gtk::Button _search;
    ProblemLine _problem;
    Gtk::Box _statusLine;
    Gtk::Spinner _spinner;
    Gtk::Label _status;
    ProblemLine _incomplete;
    Gtk::Box _foundList;
    /// Those beyond what was found are hidden.
    std::vector<std::unique_ptr<FoundRow>> _found;
};

} // namespace KesDevice
