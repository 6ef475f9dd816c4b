#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <gtkmm/window.h>

#include <string>

namespace KesProgram {

/// A picture of a window's content as it is on the screen. GUI thread.
class KES_EXPORT WindowPicture {
public:
    /// Writes a PNG file, whole or not at all, in the pixels of the screen. The window is shown, and nothing
    /// lies over it. The failure's text can be shown to the user.
    static Kes::Result save(Gtk::Window& window, const std::string& path);
};

} // namespace KesProgram
