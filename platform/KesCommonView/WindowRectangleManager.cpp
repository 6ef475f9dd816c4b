#include <KesCommonView/WindowRectangleManager.h>

#include <KesCommonView/WindowPlacement.h>

#include <gdk/gdkx.h>
#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <glibmm/main.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kes {

namespace {

std::vector<RectangleF> getMonitorAreas(const Glib::RefPtr<Gdk::Display>& display)
{
    std::vector<RectangleF> areas;
    for (int i = 0; i < display->get_n_monitors(); ++i) {
        Gdk::Rectangle area;
        display->get_monitor(i)->get_workarea(area);
        const RectangleF rectangle{static_cast<float>(area.get_x()), static_cast<float>(area.get_y()),
                                   static_cast<float>(area.get_width()),
                                   static_cast<float>(area.get_height())};
        // Monitors that show the same are one.
        if (std::find(areas.begin(), areas.end(), rectangle) == areas.end())
            areas.push_back(rectangle);
    }
    return areas;
}

int toPixel(float value)
{
    return static_cast<int>(std::lround(value));
}

} // namespace

WindowRectangleManager::WindowRectangleManager(Gtk::Window& window) : _window(window)
{
    _configured = _window.signal_configure_event().connect(
        [this](GdkEventConfigure*) {
            _readLater();
            return false;
        },
        false);
}

WindowRectangleManager::~WindowRectangleManager()
{
    _configured.disconnect();
    _reading.disconnect();
}

bool WindowRectangleManager::canPlace(const Gtk::Window& window)
{
    return GDK_IS_X11_DISPLAY(window.get_display()->gobj());
}

void WindowRectangleManager::setRectangle(const RectangleF& rectangle)
{
    if (!WindowPlacement::isRectangle(rectangle))
        return;
    _last = WindowPlacement::bringOnto(rectangle, getMonitorAreas(_window.get_display()));
    if (canPlace(_window))
        _window.move(toPixel(_last.x), toPixel(_last.y));
    _window.resize(toPixel(_last.width), toPixel(_last.height));
}

RectangleF WindowRectangleManager::getRectangle() const
{
    if (_reading.connected())
        _read();
    return _last;
}

void WindowRectangleManager::_readLater()
{
    // Reading asks the display server several times: once when all is drawn, not for each step of a move.
    if (!_reading.connected())
        _reading = Glib::signal_idle().connect(
            [this] {
                _read();
                return false;
            },
            Glib::PRIORITY_LOW);
}

void WindowRectangleManager::_read() const
{
    if (!_window.get_mapped())
        return;
    int x = toPixel(_last.x);
    int y = toPixel(_last.y);
    int width = 0;
    int height = 0;
    if (canPlace(_window))
        _window.get_position(x, y);
    _window.get_size(width, height);
    _last = {static_cast<float>(x), static_cast<float>(y), static_cast<float>(width),
             static_cast<float>(height)};
}

} // namespace Kes
