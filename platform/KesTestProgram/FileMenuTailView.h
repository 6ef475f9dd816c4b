#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <gtkmm/menuitem.h>
#include <gtkmm/separatormenuitem.h>

#include <sigc++/sigc++.h>

namespace KesTestProgram {

/// What the program adds to the File menu: the recent files and Exit. GUI thread.
class KES_EXPORT FileMenuTailView {
public:
    /// The user wants to leave the program.
    sigc::signal<void()> signalExit;

    /// Both views outlive this one: the menu, to the end of which the items go, and the menu of the recent
    /// files.
    FileMenuTailView(Kes::IView& fileMenu, Kes::IView& recentFiles);

    /// Another archive cannot be opened while a test is under way.
    void setRecentEnabled(bool enabled);

private:
    Gtk::SeparatorMenuItem _firstSeparator;
    Gtk::MenuItem _recent;
    Gtk::SeparatorMenuItem _secondSeparator;
    Gtk::MenuItem _exit;
};

} // namespace KesTestProgram
