#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <gtkmm/menuitem.h>
#include <gtkmm/separatormenuitem.h>

#include <sigc++/sigc++.h>

namespace KesTestProgram {

/// What the program adds to the File menu: the recent files and Exit. It is no widget of its own: it keeps
/// the items, which leave the menu when it dies. GUI thread.
class KES_EXPORT FileMenuTailView {
public:
    /// The user wants to leave the program.
    sigc::signal<void()> signalExit;

    /// Both views outlive this one: the menu, to the end of which the items go, and the menu of the recent
    /// files. `std::bad_cast` for views that are not such menus.
    FileMenuTailView(Kes::IView& fileMenu, Kes::IView& recentFiles);

    /// Off while there are no recent files. They stay on while a test runs: opening another archive stops the
    /// test, and the user is told so.
    void setRecentEnabled(bool enabled);

private:
    Gtk::SeparatorMenuItem _firstSeparator;
    Gtk::MenuItem _recent;
    Gtk::SeparatorMenuItem _secondSeparator;
    Gtk::MenuItem _exit;
};

} // namespace KesTestProgram
