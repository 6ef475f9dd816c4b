#include <KesProgram/views/StatusBarInfoView.h>

#include <KesCommon/Text.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesProgram/views/detail/StatusArea.h>

#include <atkmm/object.h>

namespace KesProgram {

StatusBarInfoView::StatusBarInfoView()
{
    get_style_context()->add_class("statusbar");
    get_style_context()->add_class("statusInfoArea");
    set_hexpand(true);
    makeStatusArea(*this);
    set_can_focus(true);
    static constexpr lng::Text name{"StatusBar.info", "State of the program", "Состояние программы"};
    Kes::GtkWidgetHelper::setAccessibleName(*this, name.get());

    _label.get_style_context()->add_class("status_label");
    _label.set_halign(Gtk::ALIGN_START);
    _label.set_ellipsize(Pango::ELLIPSIZE_END);
    add(_label);
}

void StatusBarInfoView::setInfo(const std::string& text)
{
    const unsigned call = ++_lastCall;
    _guard.safeUpdateView([this, call, text] {
        // A later call that acted at once has overtaken this one.
        if (call == _lastCall)
            _show(text);
    });
}

void StatusBarInfoView::_show(const std::string& text)
{
    const Glib::ustring shown = Glib::ustring(text).make_valid();
    // The bold font would hold up the first frame, when there is no text yet.
    if (!shown.empty())
        _label.get_style_context()->add_class("status_text");
    if (shown.empty())
        get_style_context()->remove_class("hasText");
    else
        get_style_context()->add_class("hasText");
    _label.set_text(shown);
    Kes::GtkWidgetHelper::setTooltip(_label, shown);
    // A new name would be announced here and, the same, by the status bar.
    get_accessible()->set_description(shown);
}

} // namespace KesProgram
