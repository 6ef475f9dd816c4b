#include <KesCommonView/GtkWidgetHelper.h>

#include <atkmm/object.h>
#include <gtkmm/toolitem.h>

namespace Kes::GtkWidgetHelper {

Gtk::Window* getParentWindow(IView* view)
{
    auto* widget = dynamic_cast<Gtk::Widget*>(view);
    return widget ? dynamic_cast<Gtk::Window*>(widget->get_toplevel()) : nullptr;
}

void setAccessibleName(Gtk::Widget& widget, const std::string& name)
{
    widget.get_accessible()->set_name(name);
    // A tool item is a panel to assistive technology; the button is inside.
    auto* item = dynamic_cast<Gtk::ToolItem*>(&widget);
    if (item && item->get_child())
        item->get_child()->get_accessible()->set_name(name);
}

void removeChildren(Gtk::Container& container)
{
    for (auto* child : container.get_children())
        container.remove(*child);
}

} // namespace Kes::GtkWidgetHelper
