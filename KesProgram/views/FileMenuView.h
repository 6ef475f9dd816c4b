#pragma once

#include <KesProgram/views/IFileMenuView.h>
#include <KesProgram/views/WindowKeys.h>

#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>

namespace KesProgram {

/// The file menu as an item of a menu bar: New, Open, Save, Save as, with their keys. Save and Save as are
/// always on, also while a test runs. GUI thread.
///
/// A program may append items of its own to the submenu; they stay its own. The view only reports what is
/// chosen: `FileMenuPresenter` connects it to the commands of the shell.
class KES_EXPORT FileMenuView : public Gtk::MenuItem, public IFileMenuView {
public:
    FileMenuView();

    /// Switches the key off as well: Ctrl+N then does nothing in the whole window.
    void setEnabledNew(bool enabled) override;
    /// As `setEnabledNew`, for Ctrl+O.
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
