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

protected:
    /// Not placed; for a derived header that sets its own tools apart.
    Gtk::SeparatorToolItem _separator;

private:
    Gtk::MenuBar _menuBar;
    Gtk::Box _toolbars;
};

} // namespace KesProgram
