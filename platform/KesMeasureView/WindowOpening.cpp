#include <KesMeasureView/WindowOpening.h>

#include <KesCommonView/Window.h>

#include <gdkmm/display.h>
#include <gdkmm/monitor.h>

#include <algorithm>

namespace KesMeasure {

namespace {

/// The monitor on which a new window appears, as far as that can be known.
Gdk::Rectangle monitorArea(const Glib::RefPtr<Gdk::Display>& display)
{
    auto monitor = display->get_primary_monitor();
    if (!monitor)
        monitor = display->get_monitor(0);
    Gdk::Rectangle area(0, 0, 1024, 600);
    if (monitor)
        monitor->get_geometry(area);
    return area;
}

} // namespace

void WindowOpening::setDefaultSize(Kes::IView& view, double width, double height)
{
    auto* window = dynamic_cast<Gtk::Window*>(&view);
    if (!window)
        return;
    const auto font = window->get_style_context()->get_font();
    const double points = font.get_size() > 0 ? font.get_size() / double(PANGO_SCALE) : 10.0;
    const double pixels = font.get_size_is_absolute() ? points : points * 96.0 / 72.0;
    const auto area = monitorArea(window->get_display());
    // The frame around the window and the desktop's panel take their parts. To ask how much the panel takes
    // would be felt in the time until the window is up.
    window->set_default_size(std::min(static_cast<int>(width * pixels), area.get_width() - 20),
                             std::min(static_cast<int>(height * pixels), area.get_height() - 60));
}

void WindowOpening::afterFirstFrame(Kes::IView& view, const sigc::slot<void()>& slot)
{
    if (auto* window = dynamic_cast<Kes::Window*>(&view))
        window->afterFirstFrame(slot);
}

} // namespace KesMeasure
