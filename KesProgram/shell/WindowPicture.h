#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <cairomm/surface.h>
#include <gtkmm/window.h>
#include <sigc++/sigc++.h>

#include <functional>
#include <string>

namespace KesProgram {

/// A picture of a window's content, without the title bar.
///
/// It is copied from what the widgets draw for the screen, because not every window system lets a program
/// read the screen. So nothing that lies over the window is in it. GUI thread.
class KES_EXPORT WindowPicture : public sigc::trackable {
public:
    /// Waits until changes made before have been laid out and drawn, and takes the picture. `whenTaken` is
    /// called once, by the main loop, also when the window is not drawn for two seconds; not after the end of
    /// this object. The window outlives it.
    WindowPicture(Gtk::Window& window, std::function<void()> whenTaken);
    ~WindowPicture();
    WindowPicture(const WindowPicture&) = delete;
    WindowPicture& operator=(const WindowPicture&) = delete;

    /// Writes a PNG file, whole or not at all, in the pixels of the screen. Fails when the window was not
    /// drawn; the failure's text can be shown to the user.
    Kes::Result save(const std::string& path) const;

private:
    bool _onDrawn(const Cairo::RefPtr<Cairo::Context>& context);
    void _end();

    Gtk::Window& _window;
    std::function<void()> _whenTaken;
    int _drawnFrames = 0;
    Cairo::RefPtr<Cairo::ImageSurface> _picture;
    sigc::connection _drawConnection;
};

} // namespace KesProgram
