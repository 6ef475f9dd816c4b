#pragma once

#include <KesCommon/Export.h>
#include <KesDevice/view/DeviceEntry.h>
#include <KesDevice/view/DeviceWidgets.h>

#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/spinner.h>

#include <sigc++/sigc++.h>

namespace KesDevice {

/// One device in the list: place, address, identity, commands, auxiliary supply. The row changes nothing by
/// itself: it reports what the user wants, and shows what `setState` says. GUI thread.
class KES_EXPORT DeviceRowView : public Gtk::Box {
public:
    /// Shows no device before the first `setState`.
    DeviceRowView();

    /// The user wants to know which device answers at the address. Not while one is being asked.
    sigc::signal<void()> signalIdentify;
    /// By one place; down is positive.
    sigc::signal<void(int)> signalMove;
    /// The user wants the device out of the list.
    sigc::signal<void()> signalRemove;
    /// On or off, and the volts as typed, with each character: whether they make sense is up to the slot.
    sigc::signal<void(bool, const std::string&)> signalAuxDC;

    /// Shows the device; `place` counts from 0 and is shown from 1. Emits nothing, and leaves the cursor in
    /// the voltage where it is as long as the text is the same.
    void setState(const DeviceEntry& state, std::size_t place, bool isLast);
    /// Puts the focus on the voltage, which takes it only while the supply is on.
    void focusVolts();
    /// Focuses the button that moves up (-1) or down (1); the opposite one when the device cannot move that
    /// way.
    void focusMove(int by);
    /// Puts the focus on the button that takes the device out of the list.
    void focusRemove();

private:
    void _buildHead();
    void _buildAuxDC();
    void _setIdentity(const DeviceEntry& state);
    void _setAuxDC(const DeviceEntry& state);
    /// For who does not see which row a button is in.
    void _nameControls(const std::string& address);
    void _onAuxDC();

    Gtk::Box _head;
    Gtk::Label _place;
    Gtk::Label _address;
    Gtk::Box _identityCell;
    Gtk::Spinner _spinner;
    Kes::ZoomedIcon _identityIcon;
    Gtk::Label _identity;
    IconButton _identify;
    IconButton _up;
    IconButton _down;
    IconButton _remove;
    Gtk::Box _auxDC;
    Gtk::CheckButton _auxDCEnabled;
    Gtk::Entry _volts;
    Gtk::Label _unit;
    ProblemLine _problem;
    /// The address that the names of the controls contain.
    std::string _namedAddress;
    /// While `setState` changes the controls, they report nothing.
    bool _isSetting = false;
};

} // namespace KesDevice
