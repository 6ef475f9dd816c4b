#pragma once

#include <gtkmm/menu.h>

namespace KesProgram {

/// The first base of a menu view, before `Gtk::Menu`, so that it is destroyed last. Keeps the GTK object of
/// the menu until the C++ object has been destroyed. Otherwise a menu item that dies before its submenu
/// destroys that object first, and memory is lost. GUI thread.
class MenuKeeper {
protected:
    MenuKeeper() = default;
    ~MenuKeeper() { g_clear_object(&_menu); }
    MenuKeeper(const MenuKeeper&) = delete;
    MenuKeeper& operator=(const MenuKeeper&) = delete;

    /// Call it once, in the constructor of the derived view: the destructor gives back one reference, and
    /// that of an earlier call never.
    void _keep(Gtk::Menu& menu) { _menu = GTK_MENU(g_object_ref(menu.gobj())); }

private:
    GtkMenu* _menu = nullptr;
};

} // namespace KesProgram
