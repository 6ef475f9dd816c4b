#pragma once

#include <KesCommon/Export.h>
#include <KesDevice/view/DeviceEntry.h>
#include <KesDevice/view/DeviceWidgets.h>

#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/spinner.h>

#include <sigc++/sigc++.h>

namespace KesDevice {

/// One device in the list: place, address, identity, commands, auxiliary supply. GUI thread.
class KES_EXPORT DeviceRowView : public Gtk::Box {
public:
    DeviceRowView();

    /// The user wants to know which device answers at the address.
    sigc::signal<void()> signalIdentify;
    /// By one place; down is positive.
    sigc::signal<void(int)> signalMove;
    /// The user wants the device out of the list.
    sigc::signal<void()> signalRemove;
    /// On or off, and the volts as typed.
    sigc::signal<void(bool, const std::string&)> signalAuxDC;

    /// Shows the device; `place` counts from 0. Emits nothing.
    void setState(const DeviceEntry& state, std::size_t place, bool isLast);
    void focusVolts();
    /// Focuses the button that moves up (-1) or down (1); the opposite one when the device cannot move that
    /// way.
    void focusMove(int by);
    void focusRemove();

private:
    void _buildHead();
    void _buildAuxDC();
    void _setIdentity(const DeviceEntry& state);
    void _setAuxDC(const DeviceEntry& state);
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
    std::string _namedAddress;
    bool _isSetting = false;
};

} // namespace KesDevice
