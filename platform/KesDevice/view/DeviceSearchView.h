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

/// An address field with its commands, and what the search has found below. It judges no address and adds no
/// device: it reports what the user wants. GUI thread.
class KES_EXPORT DeviceSearchView : public Gtk::Box, public Kes::IView {
public:
    DeviceSearchView();
    ~DeviceSearchView() override;

    /// The button, or Enter in the field. In an empty field Enter means the default button of the window
    /// instead.
    sigc::signal<void()> signalAdd;
    /// With each character, and when `clearAddress` has changed the field: a problem that is shown may be out
    /// of date.
    sigc::signal<void()> signalAddressEdited;
    /// The user wants a search; not while one is running.
    sigc::signal<void()> signalSearch;
    /// The argument is the address of the row, as it is shown: what was found may have grown meanwhile.
    sigc::signal<void(const std::string&)> signalAddFound;

    /// What is typed in the address field, with the blanks around it.
    std::string getAddress() const;
    /// For an address that has been accepted.
    void clearAddress();
    void focusAddress();
    /// Why the address is refused; empty when it is not. It stays, in a line of its own below the field,
    /// until the next call.
    void setProblem(const std::string& problem);
    /// Shows this in place of what was shown before, and the devices in the order given: their rows may
    /// change places while more is found. A device that is in the list already has no button.
    void setSearch(const DeviceSearchState& state);

private:
    /// One device that was found, with the command that adds it.
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
    /// Why there may be more devices than are shown.
    ProblemLine _incomplete;
    Gtk::Box _foundList;
    /// Those beyond what was found are hidden.
    std::vector<std::unique_ptr<FoundRow>> _found;
};

} // namespace KesDevice
