#pragma once

#include <gtkmm/menu.h>

namespace KesProgram {

/// The first base of a menu view, before `Gtk::Menu`, so that it lets go last. Keeps the toolkit's part of
/// the menu until the C++ part has gone. Without, a menu item that dies before the menu below it takes that
/// part along, and nobody frees what belongs to it. GUI thread.
class MenuKeeper {
protected:
    MenuKeeper() = default;
    ~MenuKeeper() { g_clear_object(&_menu); }
    MenuKeeper(const MenuKeeper&) = delete;
    MenuKeeper& operator=(const MenuKeeper&) = delete;

    void _keep(Gtk::Menu& menu) { _menu = GTK_MENU(g_object_ref(menu.gobj())); }

private:
    GtkMenu* _menu = nullptr;
};

} // namespace KesProgram
