#pragma once

#include <gtkmm/widget.h>

/// The pictures of commands and states, which style sheets give to classes. They can be missing: the data is
/// not there, or what reads its format is not installed. GUI thread.
namespace KesProgram::Pictures {

/// Loads the family's sheet of pictures.
void load();

/// Calls the slot: at once when the sheet is loaded, else when it is, and never
/// after the end of an object that the slot is bound to.
void afterLoad(const sigc::slot<void()>& slot);

/// Whether the widget's style gives it a picture in which anything is to be seen. Where the sheet names
/// a file for it all the same, the log gets a warning with the file's name, once.
bool has(const Gtk::Widget& widget);

} // namespace KesProgram::Pictures
