#pragma once

#include <KesCommonView/IWindowRectangle.h>

#include <gtkmm/window.h>

namespace Kes {

/// Places a window and reads its place. GUI thread.
///
/// The rectangle is the position of the window's frame and the size of its content, in GDK's pixels (which
/// are larger than the screen's at a scale factor of 2). It is followed while the window is shown; while
/// the window is hidden it is the last one that the window had, before the first show the one set last.
/// Where the display does not say where windows are, the position stays the one that was set.
class KES_EXPORT WindowRectangleManager {
public:
    /// The window outlives the manager.
    explicit WindowRectangleManager(Gtk::Window& window);
    ~WindowRectangleManager();
    WindowRectangleManager(const WindowRectangleManager&) = delete;
    WindowRectangleManager& operator=(const WindowRectangleManager&) = delete;

    /// Whether the display says where windows are, and lets them be placed. Wayland keeps them to itself.
    static bool canPlace(const Gtk::Window& window);

    /// Moves and sizes the window. A rectangle that lies outside the monitors that are there now, or is
    /// larger than its monitor, is brought back into the nearest one. A rectangle without sense (not
    /// finite, no size) changes nothing.
    void setRectangle(const RectangleF& rectangle);
    RectangleF getRectangle() const;

private:
    void _readLater();
    void _read() const;

    Gtk::Window& _window;
    mutable RectangleF _last;
    sigc::connection _configured;
    sigc::connection _reading;
};

} // namespace Kes
