#include <KesProgram/views/StatusBarHardwareKestoIconsView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesDevice/HardwareManagerText.h>

namespace KesProgram {

StatusBarHardwareKestoIconsView::StatusBarHardwareKestoIconsView() : Gtk::HBox(false, 0)
{
    get_style_context()->add_class("innerContentMargin");
    set_halign(Gtk::ALIGN_START);

    const std::string text = lng::HardwareManager::get("auxDC.enabled");
    _auxDC.get_style_context()->add_class("AuxDcWhiteImage");
    _auxDC.get_style_context()->add_class("ImageButton");
    _auxDC.set_tooltip_text(text);
    Kes::GtkWidgetHelper::setAccessibleName(_auxDC, text);
}

void StatusBarHardwareKestoIconsView::setAuxDCEnabled(bool enabled)
{
    const bool shown = _auxDC.get_parent() != nullptr;
    if (!enabled) {
        if (shown)
            remove(_auxDC);
        return;
    }
    if (!shown)
        pack_start(_auxDC, false, false, 0);
    show_all();
}

} // namespace KesProgram
