#include <KesProgram/views/ToolButton.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesProgram/views/detail/Pictures.h>

#include <atkmm/object.h>
#include <gtkmm/image.h>
#include <gtkmm/tooltip.h>

#include <algorithm>
#include <functional>

namespace KesProgram {

namespace {

Gtk::Image& makeImage(const std::string& imageClass)
{
    auto* image = Gtk::make_managed<Gtk::Image>();
    image->get_style_context()->add_class(imageClass);
    return *image;
}

/// Without a picture widget a tool button shows its label in every style of toolbar.
void showTextWithoutPicture(Gtk::ToolButton& button)
{
    const auto* image = button.get_icon_widget();
    if (image && !Pictures::has(*image))
        gtk_tool_button_set_icon_widget(button.gobj(), nullptr);
}

} // namespace

ToolButton::ToolButton(const std::string& imageClass, const std::string& tooltip)
    : Gtk::ToolButton(makeImage(imageClass))
{
    const auto end = std::min(tooltip.find('\n'), tooltip.size());
    const std::string title = tooltip.substr(0, end);
    set_label(title);
    // The item carries the tooltip for whoever asks it, the push button inside for assistive technology:
    // that is the control which the user reaches, and neither a tooltip nor a hidden label names it.
    Gtk::Widget::set_tooltip_text(tooltip);
    set_tooltip_text(tooltip);
    get_accessible()->set_description({});
    auto* button = get_child();
    Kes::GtkWidgetHelper::setAccessibleName(*button, title);
    Kes::GtkWidgetHelper::setTooltip(*button, tooltip, tooltip.substr(std::min(end + 1, tooltip.size())));
    // The item is no control to assistive technology: what switches it on or off is announced for the button.
    property_sensitive().signal_changed().connect([this, button] { button->set_sensitive(get_sensitive()); });
    signal_map().connect([this] {
        Pictures::afterLoad(
            sigc::bind(sigc::ptr_fun(&showTextWithoutPicture), std::ref<Gtk::ToolButton>(*this)));
    });
}

void ToolButton::tellKey(const Key& key)
{
    auto* button = get_child();
    std::string text = button->get_tooltip_text();
    text.insert(std::min(text.find('\n'), text.size()), " (" + key.getName() + ")");
    const auto show = [text](int, int, bool, const Glib::RefPtr<Gtk::Tooltip>& tooltip) {
        tooltip->set_text(text);
        return true;
    };
    button->signal_query_tooltip().connect(show, false);
}

} // namespace KesProgram
