#include <KesProgram/views/StatusBarHardwareKestoIconsView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesProgram/views/detail/Pictures.h>

namespace KesProgram {

StatusBarHardwareKestoIconsView::StatusBarHardwareKestoIconsView() : Gtk::HBox(false, 0)
{
    get_style_context()->add_class("innerContentMargin");
    set_halign(Gtk::ALIGN_START);

    const std::string text = lng::HardwareManager::get("auxDC.enabled");
    _auxDC.get_style_context()->add_class("AuxDcWhiteImage");
    _auxDC.get_style_context()->add_class("ImageButton");
    Kes::GtkWidgetHelper::setTooltip(_auxDC, text);
    Kes::GtkWidgetHelper::setAccessibleName(_auxDC, text);
    _auxDCText.set_text(text);
    _auxDC.signal_map().connect([this] {
        Pictures::afterLoad(sigc::mem_fun(*this, &StatusBarHardwareKestoIconsView::_showTextWithoutPicture));
    });
}

void StatusBarHardwareKestoIconsView::_showTextWithoutPicture()
{
    if (_auxDC.get_parent() && !_auxDCText.get_parent() && !Pictures::has(_auxDC)) {
        pack_start(_auxDCText, false, false, 0);
        _auxDCText.show();
    }
}

void StatusBarHardwareKestoIconsView::setAuxDCEnabled(bool enabled)
{
    const bool shown = _auxDC.get_parent() != nullptr;
    if (!enabled) {
        for (auto* child : get_children())
            remove(*child);
        return;
    }
    if (!shown)
        pack_start(_auxDC, false, false, 0);
    show_all();
}

} // namespace KesProgram
