#include <KesProgram/views/ProgramMainMenuView.h>

#include <gtkmm/menuitem.h>
#include <gtkmm/separatormenuitem.h>

namespace KesProgram {

ProgramMainMenuView::ProgramMainMenuView() : _toolbars(Gtk::ORIENTATION_HORIZONTAL, 0)
{
    get_style_context()->add_class("menubar");
    set_orientation(Gtk::ORIENTATION_HORIZONTAL);
    set_vexpand(false);

    _menuBar.set_vexpand(true);
    _toolbars.set_hexpand(true);
    _toolbars.set_vexpand(true);
    add(_menuBar);
    add(_toolbars);
}

void ProgramMainMenuView::addMenu(Kes::IView* view)
{
    if (auto* menu = dynamic_cast<Gtk::MenuItem*>(view))
        _menuBar.add(*menu);
}

void ProgramMainMenuView::addToolbar(Kes::IView* view)
{
    auto* toolbar = dynamic_cast<Gtk::Widget*>(view);
    if (!toolbar)
        return;
    auto* separator = Gtk::make_managed<Gtk::SeparatorMenuItem>();
    separator->get_style_context()->add_class("menuitem_separator");
    _toolbars.add(*separator);
    _toolbars.add(*toolbar);
    // It may come when the window is up already.
    _toolbars.show_all();
}

} // namespace KesProgram
