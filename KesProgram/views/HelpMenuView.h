#pragma once

#include <KesProgram/views/IHelpMenuView.h>
#include <KesProgram/views/WindowKeys.h>

#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>

namespace KesProgram {

/// The help menu as an item of a menu bar: About, Help. GUI thread.
///
/// Only Help has a key, F1 (`Keys::help`), which works wherever the focus is in the window. Nothing in the
/// menu can be switched off, because help may be read while a test runs.
///
/// The view only reports what is chosen: `HelpMenuPresenter` shows the windows.
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
