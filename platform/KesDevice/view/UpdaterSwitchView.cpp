#include <KesDevice/view/UpdaterSwitchView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesDevice/view/detail/DeviceViewText.h>

namespace KesDevice {

UpdaterSwitchView::UpdaterSwitchView() : Gtk::CheckButton(lng::DeviceView::get("Updater.label"))
{
    get_style_context()->add_class("kes-updater-switch");
    const std::string tooltip = lng::DeviceView::get("Updater.tooltip");
    Kes::GtkWidgetHelper::setTooltip(*this, tooltip, tooltip.substr(tooltip.find('\n') + 1));
    set_valign(Gtk::ALIGN_CENTER);
    Kes::GtkWidgetHelper::setAccessibleName(*this, lng::DeviceView::get("Updater.label"));
    show();
}

void UpdaterSwitchView::setIsOn(bool on)
{
    _isSetting = true;
    set_active(on);
    _isSetting = false;
}

void UpdaterSwitchView::on_toggled()
{
    Gtk::CheckButton::on_toggled();
    if (!_isSetting)
        signalSwitched.emit(get_active());
}

} // namespace KesDevice
