#pragma once

#include <KesCommonView/IWindowRectangle.h>

#include <gtkmm/window.h>

namespace Kes {

/// Places a window and reads its place. GUI thread.
///
/// The rectangle is the position of the window's frame and the size of its content, in pixels, as the
/// window manager keeps them. It is read while the window is shown; afterwards the last one read stands.
class KES_EXPORT WindowRectangleManager {
public:
    /// The window outlives the manager.
    explicit WindowRectangleManager(Gtk::Window& window);

    /// Moves and sizes the window. A rectangle that lies outside the monitors that are there now, or is
    /// larger than its monitor, is brought back into the nearest one. A rectangle without sense (not
    /// finite, no size) changes nothing.
    void setRectangle(const RectangleF& rectangle);
    RectangleF getRectangle() const;

private:
    Gtk::Window& _window;
    RectangleF _last;
};

} // namespace Kes
