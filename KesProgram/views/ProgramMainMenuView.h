#pragma once

#include <KesProgram/views/IProgramMainMenuView.h>

#include <gtkmm/box.h>
#include <gtkmm/grid.h>
#include <gtkmm/menubar.h>
#include <gtkmm/separatortoolitem.h>

namespace KesProgram {

/// The header: a menu bar, and the toolbars to the right of it, each behind a separator. GUI thread.
///
/// A menu has to be a menu item, which is what a menu bar consists of.
class KES_EXPORT ProgramMainMenuView : public Gtk::Grid, public IProgramMainMenuView {
public:
    ProgramMainMenuView();

    void addMenu(Kes::IView* view) override;
    void addToolbar(Kes::IView* view) override;

private:
    Gtk::MenuBar _menuBar;
    Gtk::Box _toolbars;
    Gtk::SeparatorToolItem _separator; // for programs that place it; the header itself does not
};

} // namespace KesProgram
