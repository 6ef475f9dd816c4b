#pragma once

#include <gtkmm/widget.h>

namespace KesProgram {

/// Tells assistive technology that the widget is an area of the status bar, whose name reports what goes on.
/// GUI thread.
void makeStatusArea(Gtk::Widget& widget);

} // namespace KesProgram
