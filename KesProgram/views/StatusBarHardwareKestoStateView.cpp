#include <KesProgram/views/StatusBarHardwareKestoStateView.h>

namespace KesProgram {

StatusBarHardwareKestoStateView::StatusBarHardwareKestoStateView()
{
    get_style_context()->add_class("innerContentMargin");
    set_halign(Gtk::ALIGN_START);
}

void StatusBarHardwareKestoStateView::setText(const std::string& text)
{
    set_text(Glib::ustring(text).make_valid());
}

void StatusBarHardwareKestoStateView::setExtendedText(const std::string& text)
{
    set_tooltip_text(Glib::ustring(text).make_valid());
}

void StatusBarHardwareKestoStateView::setIsValid(const Kes::Nullable<bool>& valid)
{
    const auto style = get_style_context();
    style->remove_class("stateError");
    style->remove_class("stateUndefined");
    if (!valid.hasValue())
        style->add_class("stateUndefined");
    else if (!valid.getValue())
        style->add_class("stateError");
}

} // namespace KesProgram
