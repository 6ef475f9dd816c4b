#pragma once

#include <KesDevice/view/DeviceRowView.h>
#include <KesDevice/view/IDeviceListView.h>

#include <gtkmm/scrolledwindow.h>

#include <memory>
#include <vector>

namespace KesDevice {

/// The list of devices: one row per device, or a text when there is none. It scrolls by itself; the focus
/// follows a device that is moved. GUI thread.
class KES_EXPORT DeviceListView : public Gtk::Box, public IDeviceListView {
public:
    DeviceListView();
    ~DeviceListView() override;

    void setDevices(const std::vector<DeviceEntry>& devices) override;
    void focusVolts(std::size_t index) override;

private:
    void _buildList();
    void _addRow();
    /// Shows the device that has just been added, once there is room for it.
    void _onSizeChanged();
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
};

} // namespace KesDevice
