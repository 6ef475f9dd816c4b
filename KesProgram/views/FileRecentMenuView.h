#pragma once

#include <KesProgram/views/IFileRecentMenuView.h>

#include <gtkmm/menu.h>

namespace KesProgram {

/// Keeps the toolkit's part of a menu until the C++ part has gone. Without, the item that holds the menu
/// takes that part along when it dies first, and nobody frees what belongs to it.
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

/// The recent files as a menu, which a program hangs below an item of its own. A long path is shortened
/// in the middle; its tooltip has it whole. GUI thread.
class KES_EXPORT FileRecentMenuView : private MenuKeeper, public Gtk::Menu, public IFileRecentMenuView {
public:
    FileRecentMenuView();

    void setFileCollection(const std::vector<std::string>& paths) override;

private:
    void _addFile(const std::string& path);
};

} // namespace KesProgram
