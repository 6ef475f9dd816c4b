#pragma once

#include <gdkmm/pixbuf.h>

#include <vector>

namespace Kes {

/// The family's icon from 16 to 128 pixels, smallest first; empty, with a warning in the log, when the
/// picture cannot be read. Read once. GUI thread.
const std::vector<Glib::RefPtr<Gdk::Pixbuf>>& getWindowIcons();

} // namespace Kes
