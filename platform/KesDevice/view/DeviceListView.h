#pragma once

#include <KesCommonView/IView.h>
#include <KesDevice/view/DeviceRowView.h>

#include <gtkmm/scrolledwindow.h>
#include <sigc++/sigc++.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace KesDevice {

/// The list of devices: one row per device, or a text when there is none. It scrolls by itself; the focus
/// follows a device that is moved, and goes to the next one when one is removed. GUI thread.
class KES_EXPORT DeviceListView : public Gtk::Box, public Kes::IView {
public:
    DeviceListView();
    ~DeviceListView() override;

    /// The user wants to know which device answers. Here and below the arguments begin with the device's
    /// place in the list, from 0.
    sigc::signal<void(std::size_t)> signalIdentify;
    /// By one place; down is positive.
    sigc::signal<void(std::size_t, int)> signalMove;
    /// The user wants the device out of the list; the view itself removes nothing.
    sigc::signal<void(std::size_t)> signalRemove;
    /// The auxiliary supply is to be on or off, with the voltage as typed.
    sigc::signal<void(std::size_t, bool, const std::string&)> signalAuxDC;

    /// Shows the devices in place of those shown so far, and emits nothing. When there are more than before,
    /// the list scrolls to its end.
    void setDevices(const std::vector<DeviceEntry>& devices);
    /// Puts the focus on the device's voltage; nothing happens beyond the list.
    void focusVolts(std::size_t index);

private:
    void _buildList();
    void _addRow();
    /// Shows the device that has just been added, once there is room for it.
    void _onSizeChanged();
    void _onScrolled();
    void _onMove(int by, std::size_t place);
    void _onRemove(std::size_t place);

    PartHeading _heading;
    Gtk::ScrolledWindow _scrolled;
    Gtk::Box _list;
    Gtk::Label _empty;
    /// Those beyond the devices are hidden and not destroyed: a row may be removed by its own button.
    std::vector<std::unique_ptr<DeviceRowView>> _rows;
    std::size_t _count = 0;
    bool _isEndWanted = false;
    sigc::connection _sizeChanged;
    sigc::connection _scrolledAway;
};

} // namespace KesDevice
