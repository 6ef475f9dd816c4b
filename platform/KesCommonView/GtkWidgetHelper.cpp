#include <KesCommonView/GtkWidgetHelper.h>

#include <atkmm/object.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/toolitem.h>

namespace Kes::GtkWidgetHelper {

namespace {

void nameToggleButtons(GtkWidget* widget, void* name)
{
    if (GTK_IS_TOGGLE_BUTTON(widget))
        atk_object_set_name(gtk_widget_get_accessible(widget), static_cast<const char*>(name));
    else if (GTK_IS_CONTAINER(widget))
        gtk_container_forall(GTK_CONTAINER(widget), &nameToggleButtons, name);
}

/// GTK gives the focus of a combo box to a button inside, which is no part of the box for assistive
/// technology but is read out all the same: with the name and, after it, the present choice.
void nameFocusOf(Gtk::ComboBoxText& combo, const std::string& name)
{
    const auto update = [&combo, name] {
        const std::string choice = combo.get_active_text();
        std::string full = choice.empty() ? name : name + ": " + choice;
        nameToggleButtons(GTK_WIDGET(combo.gobj()), full.data());
    };
    combo.signal_changed().connect(update);
    update();
}

} // namespace

Gtk::Window* getParentWindow(IView* view)
{
    auto* widget = dynamic_cast<Gtk::Widget*>(view);
    return widget ? dynamic_cast<Gtk::Window*>(widget->get_toplevel()) : nullptr;
}

void setAccessibleName(Gtk::Widget& widget, const std::string& name)
{
    widget.get_accessible()->set_name(name);
    if (auto* combo = dynamic_cast<Gtk::ComboBoxText*>(&widget))
        nameFocusOf(*combo, name);
    // A tool item is a panel to assistive technology; the button is inside.
    auto* item = dynamic_cast<Gtk::ToolItem*>(&widget);
    if (item && item->get_child())
        item->get_child()->get_accessible()->set_name(name);
}

void setTooltip(Gtk::Widget& widget, const std::string& tooltip, const std::string& description)
{
    widget.set_tooltip_text(tooltip);
    widget.get_accessible()->set_description(description);
}

void setBusy(Gtk::Widget& widget, bool busy)
{
    static const Glib::Quark hadFocus("kes-had-focus");
    if (busy && widget.is_focus())
        widget.set_data(hadFocus, &widget);
    widget.set_sensitive(!busy);
    if (busy || !widget.steal_data(hadFocus))
        return;
    const auto* window = dynamic_cast<Gtk::Window*>(widget.get_toplevel());
    if (window && !window->get_focus())
        widget.grab_focus();
}

void wrapAnywhere(Gtk::Label& label, Pango::WrapMode mode)
{
    Pango::AttrList attributes;
    Pango::Attribute noHyphens(pango_attr_insert_hyphens_new(FALSE));
    attributes.insert(noHyphens);
    label.set_attributes(attributes);
    label.set_line_wrap(true);
    label.set_line_wrap_mode(mode);
}

void removeChild(Gtk::Container& container, Gtk::Widget& child)
{
    // gtkmm's own function takes a reference to a managed child that nobody gives back.
    gtk_container_remove(container.gobj(), child.gobj());
}

void removeChildren(Gtk::Container& container)
{
    for (auto* child : container.get_children())
        removeChild(container, *child);
}

} // namespace Kes::GtkWidgetHelper
