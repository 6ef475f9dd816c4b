#include <KesDevice/view/DeviceRowView.h>

#include <KesCommon/StringHelper.h>
#include <KesCommon/UnitText.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesDevice/view/detail/DeviceViewText.h>

namespace KesDevice {

namespace {

using lng::DeviceView::get;

std::string named(const char* key, const std::string& address)
{
    return Kes::StringHelper::format(get(key), address);
}

} // namespace

DeviceRowView::DeviceRowView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, smallGap),
      _head(Gtk::ORIENTATION_HORIZONTAL, wideGap),
      _identify("view-refresh-symbolic"),
      _up("go-up-symbolic"),
      _down("go-down-symbolic"),
      _remove("list-remove-symbolic"),
      _auxDC(Gtk::ORIENTATION_HORIZONTAL, smallGap),
      _auxDCEnabled(get("Devices.auxDC")),
      _unit(lng::Unit::volt.get())
{
    get_style_context()->add_class("kes-device-row");
    _buildHead();
    _buildAuxDC();
    show_all();
}

void DeviceRowView::_buildHead()
{
    _place.get_style_context()->add_class("dim-label");
    _place.set_width_chars(2);
    _address.get_style_context()->add_class("kes-device-address");
    _address.set_selectable(true);
    _address.set_can_focus(false);
    for (Gtk::Widget* icon :
         {static_cast<Gtk::Widget*>(&_spinner), static_cast<Gtk::Widget*>(&_identityIcon)})
        icon->set_no_show_all(true);
    wrapText(_identity, 8, 44);

    _identityCell.set_spacing(smallGap);
    _identityCell.pack_start(_spinner, Gtk::PACK_SHRINK);
    _identityCell.pack_start(_identityIcon, Gtk::PACK_SHRINK);
    _identityCell.pack_start(_identity, Gtk::PACK_EXPAND_WIDGET);
    auto& commands = *Gtk::make_managed<Gtk::Box>();
    for (auto* button : {&_identify, &_up, &_down, &_remove})
        commands.pack_start(*button, Gtk::PACK_SHRINK);

    _head.pack_start(_place, Gtk::PACK_SHRINK);
    _head.pack_start(_address, Gtk::PACK_SHRINK);
    _head.pack_start(_identityCell, Gtk::PACK_EXPAND_WIDGET);
    _head.pack_start(commands, Gtk::PACK_SHRINK);
    pack_start(_head, Gtk::PACK_SHRINK);

    _identify.signal_clicked().connect(signalIdentify.make_slot());
    _up.signal_clicked().connect(sigc::bind(signalMove.make_slot(), -1));
    _down.signal_clicked().connect(sigc::bind(signalMove.make_slot(), 1));
    _remove.signal_clicked().connect(signalRemove.make_slot());
}

void DeviceRowView::_buildAuxDC()
{
    _volts.set_width_chars(6);
    _volts.set_alignment(Gtk::ALIGN_END);
    _volts.set_activates_default(true);
    _volts.set_input_purpose(Gtk::INPUT_PURPOSE_NUMBER);
    for (Gtk::Widget* control :
         {static_cast<Gtk::Widget*>(&_auxDCEnabled), static_cast<Gtk::Widget*>(&_volts)})
        control->set_valign(Gtk::ALIGN_CENTER);
    _problem.set_margin_start(wideGap);

    _auxDC.get_style_context()->add_class("kes-device-supply");
    _auxDC.pack_start(_auxDCEnabled, Gtk::PACK_SHRINK);
    _auxDC.pack_start(_volts, Gtk::PACK_SHRINK);
    _auxDC.pack_start(_unit, Gtk::PACK_SHRINK);
    _auxDC.pack_start(_problem, Gtk::PACK_EXPAND_WIDGET);
    pack_start(_auxDC, Gtk::PACK_SHRINK);

    _auxDCEnabled.signal_toggled().connect(sigc::mem_fun(*this, &DeviceRowView::_onAuxDC));
    _volts.signal_changed().connect(sigc::mem_fun(*this, &DeviceRowView::_onAuxDC));
}

void DeviceRowView::setState(const DeviceEntry& state, std::size_t place, bool isLast)
{
    _isSetting = true;
    _place.set_text(std::to_string(place + 1) + ".");
    _address.set_text(state.address);
    _up.set_sensitive(place > 0);
    _down.set_sensitive(!isLast);
    _setIdentity(state);
    _setAuxDC(state);
    _nameControls(state.address);
    _isSetting = false;
}

void DeviceRowView::_setIdentity(const DeviceEntry& state)
{
    const bool asking = state.identityState == IdentityState::Asking;
    const bool failed = state.identityState == IdentityState::Failed;
    _identity.set_text(state.identity);
    setStyleClass(_identity, "dim-label", state.identityState == IdentityState::Unknown || asking);
    setStyleClass(_identityCell, "kes-problem", failed);
    _spinner.set_visible(asking);
    _spinner.property_active() = asking;
    _identityIcon.set_visible(failed || state.identityState == IdentityState::Known);
    _identityIcon.setIcon(failed ? "dialog-warning-symbolic" : "emblem-ok-symbolic");
    Kes::GtkWidgetHelper::setBusy(_identify, asking);
}

void DeviceRowView::_setAuxDC(const DeviceEntry& state)
{
    _auxDCEnabled.set_active(state.isAuxDCEnabled);
    if (_volts.get_text().raw() != state.volts)
        _volts.set_text(state.volts);
    _volts.set_sensitive(state.isAuxDCEnabled);
    _unit.set_sensitive(state.isAuxDCEnabled);
    setStyleClass(_volts, "error", !state.voltsProblem.empty());
    _problem.setText(state.voltsProblem);
}

void DeviceRowView::_nameControls(const std::string& address)
{
    if (_namedAddress == address)
        return;
    _namedAddress = address;
    _identify.setText(named("Devices.identifyOf", address));
    _up.setText(named("Devices.up", address));
    _down.setText(named("Devices.down", address));
    _remove.setText(named("Devices.remove", address));
    Kes::GtkWidgetHelper::setAccessibleName(_auxDCEnabled, named("Devices.auxDCOf", address));
    Kes::GtkWidgetHelper::setAccessibleName(_volts, named("Devices.voltsOf", address));
}

void DeviceRowView::_onAuxDC()
{
    if (!_isSetting)
        signalAuxDC.emit(_auxDCEnabled.get_active(), _volts.get_text().raw());
}

void DeviceRowView::focusVolts()
{
    _volts.grab_focus();
}

void DeviceRowView::focusMove(int by)
{
    auto& wanted = by < 0 ? _up : _down;
    auto& other = by < 0 ? _down : _up;
    (wanted.get_sensitive() ? wanted : other).grab_focus();
}

void DeviceRowView::focusRemove()
{
    _remove.grab_focus();
}

} // namespace KesDevice
