#pragma once

#include <KesProgram/views/IProgramMainMenuView.h>

#include <gtkmm/box.h>
#include <gtkmm/grid.h>
#include <gtkmm/menubar.h>
#include <gtkmm/separatortoolitem.h>

namespace KesProgram {

/// The header: a menu bar, and the toolbars to the right of it, each behind a separator. Menus and toolbars
/// stay their owners'; they may also be added while the window is shown. GUI thread.
///
/// A menu has to be a `Gtk::MenuItem`, which is what a menu bar consists of; any other widget is ignored. Of
/// a view that is not a widget, `addToolbar` shows nothing, the separator included.
class KES_EXPORT ProgramMainMenuView : public Gtk::Grid, public IProgramMainMenuView {
public:
    ProgramMainMenuView();

    void addMenu(Kes::IView* view) override;
    /// Shows all toolbars with their parts; what is to stay hidden must refuse it (`set_no_show_all`).
    void addToolbar(Kes::IView* view) override;

protected:
    /// Not placed; for a derived header that sets its own tools apart.
    Gtk::SeparatorToolItem _separator;

private:
    Gtk::MenuBar _menuBar;
    Gtk::Box _toolbars;
};

} // namespace KesProgram
