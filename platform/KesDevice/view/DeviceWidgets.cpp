#include <KesDevice/view/DeviceWidgets.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/ZoomedIcon.h>

#include <atkmm/object.h>

namespace KesDevice {

PartHeading::PartHeading(const std::string& text) : Gtk::Label(text, Gtk::ALIGN_START)
{
    get_style_context()->add_class("kes-part-heading");
}

IconButton::IconButton(const std::string& icon)
{
    set_image(*Gtk::make_managed<Kes::ZoomedIcon>(icon));
    set_relief(Gtk::RELIEF_NONE);
    set_valign(Gtk::ALIGN_CENTER);
}

void IconButton::setText(const std::string& text)
{
    Kes::GtkWidgetHelper::setTooltip(*this, text);
    Kes::GtkWidgetHelper::setAccessibleName(*this, text);
}

ProblemLine::ProblemLine() : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, smallGap)
{
    get_style_context()->add_class("kes-problem");
    _icon.show();
    wrapText(_text, 16, 60);
    _text.show();
    // Spoken by a screen reader when it appears.
    _text.get_accessible()->set_role(Atk::ROLE_NOTIFICATION);
    pack_start(_icon, Gtk::PACK_SHRINK);
    pack_start(_text, Gtk::PACK_EXPAND_WIDGET);
    set_no_show_all(true);
}

void ProblemLine::setText(const std::string& text)
{
    _text.set_text(text);
    set_visible(!text.empty());
}

void wrapText(Gtk::Label& label, int narrowest, int widest)
{
    label.set_xalign(0.0F);
    // A word that somebody else has chosen may be as long as the text.
    Kes::GtkWidgetHelper::wrapAnywhere(label);
    label.set_width_chars(narrowest);
    label.set_max_width_chars(widest);
}

void setStyleClass(Gtk::Widget& widget, const char* styleClass, bool present)
{
    if (present)
        widget.get_style_context()->add_class(styleClass);
    else
        widget.get_style_context()->remove_class(styleClass);
}

} // namespace KesDevice
