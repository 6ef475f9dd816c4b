#include <KesDevice/view/DeviceListView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesDevice/view/detail/DeviceViewText.h>

#include <algorithm>

namespace KesDevice {

namespace {

using lng::DeviceView::get;

/// In pixels, of the part of the list that is seen.
constexpr int smallestHeight = 130;
constexpr int naturalHeight = 260;

} // namespace

DeviceListView::DeviceListView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, smallGap),
      _heading(get("Devices.title")),
      _list(Gtk::ORIENTATION_VERTICAL),
      _empty(get("Devices.none"))
{
    _buildList();
    pack_start(_heading, Gtk::PACK_SHRINK);
    pack_start(_scrolled, Gtk::PACK_EXPAND_WIDGET);
    show_all();
}

DeviceListView::~DeviceListView()
{
    // The list changes its size while its parts are destroyed.
    _sizeChanged.disconnect();
    _scrolledAway.disconnect();
}

void DeviceListView::_buildList()
{
    Kes::GtkWidgetHelper::setAccessibleName(_list, get("Devices.title"));
    _empty.get_style_context()->add_class("dim-label");
    _empty.property_margin() = wideGap;
    _empty.set_no_show_all(true);
    wrapText(_empty, 20, 70);
    _list.pack_start(_empty, Gtk::PACK_SHRINK);
    _list.set_focus_vadjustment(_scrolled.get_vadjustment());
    _scrolled.get_style_context()->add_class("kes-device-list");
    _scrolled.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    _scrolled.set_propagate_natural_width(true);
    _scrolled.set_propagate_natural_height(true);
    _scrolled.set_min_content_height(smallestHeight);
    _scrolled.set_max_content_height(naturalHeight);
    _scrolled.add(_list);
    _sizeChanged = _scrolled.get_vadjustment()->signal_changed().connect(
        sigc::mem_fun(*this, &DeviceListView::_onSizeChanged));
    _scrolledAway = _scrolled.get_vadjustment()->signal_value_changed().connect(
        sigc::mem_fun(*this, &DeviceListView::_onScrolled));
}

void DeviceListView::_onSizeChanged()
{
    const auto place = _scrolled.get_vadjustment();
    if (_isEndWanted)
        place->set_value(place->get_upper() - place->get_page_size());
}

void DeviceListView::_onScrolled()
{
    const auto place = _scrolled.get_vadjustment();
    if (place->get_value() < place->get_upper() - place->get_page_size())
        _isEndWanted = false;
}

void DeviceListView::setDevices(const std::vector<DeviceEntry>& devices)
{
    while (_rows.size() < devices.size())
        _addRow();
    _isEndWanted = _isEndWanted || (devices.size() > _count && _count > 0);
    _count = devices.size();
    for (std::size_t place = 0; place < _rows.size(); ++place) {
        _rows[place]->set_visible(place < _count);
        if (place < _count)
            _rows[place]->setState(devices[place], place, place + 1 == _count);
    }
    _empty.set_visible(devices.empty());
}

void DeviceListView::_addRow()
{
    const auto place = _rows.size();
    auto& row = *_rows.emplace_back(std::make_unique<DeviceRowView>());
    row.set_no_show_all(true);
    row.signalIdentify.connect(sigc::bind(signalIdentify.make_slot(), place));
    row.signalMove.connect(sigc::bind(sigc::mem_fun(*this, &DeviceListView::_onMove), place));
    row.signalRemove.connect(sigc::bind(sigc::mem_fun(*this, &DeviceListView::_onRemove), place));
    row.signalAuxDC.connect(
        [this, place](bool enable, const std::string& volts) { signalAuxDC.emit(place, enable, volts); });
    _list.pack_start(row, Gtk::PACK_SHRINK);
}

void DeviceListView::focusVolts(std::size_t index)
{
    if (index < _count)
        _rows[index]->focusVolts();
}

void DeviceListView::_onMove(int by, std::size_t place)
{
    const auto target = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(place) + by);
    signalMove.emit(place, by);
    if (target < _count)
        _rows[target]->focusMove(by);
}

void DeviceListView::_onRemove(std::size_t place)
{
    signalRemove.emit(place);
    if (_count > 0)
        _rows[std::min(place, _count - 1)]->focusRemove();
}

} // namespace KesDevice
