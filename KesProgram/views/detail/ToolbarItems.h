#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/toolbar.h>

namespace KesProgram {

/// Puts a view at the end of a toolbar: a tool item as it is, any other widget within one. A view that
/// is not a widget is ignored. GUI thread.
void appendToolView(Gtk::Toolbar& toolbar, Kes::IView& view);

} // namespace KesProgram
