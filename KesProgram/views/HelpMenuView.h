#pragma once

#include <KesProgram/views/IHelpMenuView.h>
#include <KesProgram/views/WindowKeys.h>

#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>

namespace KesProgram {

/// The help menu as an item of a menu bar: About, Help, with its key. GUI thread.
class KES_EXPORT HelpMenuView : public Gtk::MenuItem, public IHelpMenuView {
public:
    HelpMenuView();

private:
    WindowKeys _keys{*this};
    Gtk::Menu _menu;
    Gtk::MenuItem _about;
    Gtk::MenuItem _help;
};

} // namespace KesProgram
