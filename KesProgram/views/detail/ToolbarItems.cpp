#include <KesProgram/views/detail/ToolbarItems.h>

#include <gtkmm/toolitem.h>

namespace KesProgram {

void appendToolView(Gtk::Toolbar& toolbar, Kes::IView& view)
{
    auto* widget = dynamic_cast<Gtk::Widget*>(&view);
    if (!widget)
        return;
    if (auto* item = dynamic_cast<Gtk::ToolItem*>(widget)) {
        toolbar.append(*item);
        return;
    }
    auto* item = Gtk::make_managed<Gtk::ToolItem>();
    item->add(*widget);
    toolbar.append(*item);
}

} // namespace KesProgram
