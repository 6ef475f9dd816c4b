#pragma once

#include <KesProgram/views/IFileMenuView.h>
#include <KesProgram/views/WindowKeys.h>

#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>

namespace KesProgram {

/// The file menu as an item of a menu bar: New, Open, Save, Save as, with their keys. A program may append
/// items of its own to the submenu. GUI thread.
class KES_EXPORT FileMenuView : public Gtk::MenuItem, public IFileMenuView {
public:
    FileMenuView();

    void setEnabledNew(bool enabled) override;
    void setEnabledOpen(bool enabled) override;

private:
    WindowKeys _keys{*this};
    Gtk::Menu _menu;
    Gtk::MenuItem _new;
    Gtk::MenuItem _open;
    Gtk::MenuItem _save;
    Gtk::MenuItem _saveAs;
};

} // namespace KesProgram
