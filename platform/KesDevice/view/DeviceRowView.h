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

    sigc::signal<void()> signalIdentify;
    sigc::signal<void(int)> signalMove;
    sigc::signal<void()> signalRemove;
    sigc::signal<void(bool, const std::string&)> signalAuxDC;

    /// `place` counts from 0.
    void setState(const DeviceEntry& state, std::size_t place, bool isLast);
    void focusVolts();
    /// The button for the direction, or the other one where that way is closed.
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
