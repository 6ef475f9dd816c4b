#pragma once

#include <gtkmm/widget.h>

namespace KesProgram {

/// Makes known to assistive technology that the widget is an area of the status bar, whose name reports what
/// happens. GUI thread.
void makeStatusArea(Gtk::Widget& widget);

} // namespace KesProgram
