#pragma once

#include <KesCommonView/IView.h>
#include <KesDevice/view/DeviceSearchState.h>
#include <KesDevice/view/DeviceWidgets.h>

#include <gtkmm/entry.h>
#include <gtkmm/spinner.h>
#include <sigc++/sigc++.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace KesDevice {

/// An address field with its commands, and what the search has found below. GUI thread.
class KES_EXPORT DeviceSearchView : public Gtk::Box, public Kes::IView {
public:
    DeviceSearchView();
    ~DeviceSearchView() override;

    sigc::signal<void()> signalAdd;
    sigc::signal<void()> signalAddressEdited;
    sigc::signal<void()> signalSearch;
    /// The argument is the place in the list of what was found.
    sigc::signal<void(std::size_t)> signalAddFound;

    /// What is typed in the address field.
    std::string getAddress() const;
    void clearAddress();
    void focusAddress();
    /// Why the address is refused; empty when it is not.
    void setProblem(const std::string& problem);
    void setSearch(const DeviceSearchState& state);

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
