#pragma once

#include <gtkmm/widget.h>

namespace KesProgram {

/// Marks the widget for assistive technology as an area that reports what happens. GUI thread.
void makeStatusArea(Gtk::Widget& widget);

} // namespace KesProgram
