#include <Overcurrent/view/WindowOpening.h>

#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <glibmm/main.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <memory>

namespace Overcurrent {

namespace {

/// In milliseconds, for a window that is not drawn: a minimised one, for instance.
constexpr unsigned longestWait = 1000;

/// The monitor on which a new window appears, as far as that can be known.
Gdk::Rectangle workArea(const Glib::RefPtr<Gdk::Display>& display)
{
    auto monitor = display->get_primary_monitor();
    if (!monitor)
        monitor = display->get_monitor(0);
    Gdk::Rectangle area(0, 0, 1024, 600);
    if (monitor)
        monitor->get_workarea(area);
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
    const auto area = workArea(window->get_display());
    // The frame around the window takes its part as well.
    window->set_default_size(std::min(static_cast<int>(width * pixels), area.get_width() - 20),
                             std::min(static_cast<int>(height * pixels), area.get_height() - 60));
}

void WindowOpening::afterFirstFrame(Kes::IView& view, const sigc::slot<void()>& slot)
{
    auto* window = dynamic_cast<Gtk::Window*>(&view);
    if (!window)
        return;
    const auto isCalled = std::make_shared<bool>(false);
    const auto call = [slot, isCalled] {
        if (!std::exchange(*isCalled, true))
            slot();
    };
    const auto connection = std::make_shared<sigc::connection>();
    *connection = window->signal_draw().connect([call, connection](const Cairo::RefPtr<Cairo::Context>&) {
        // Not from here: the slot changes what is being drawn, and the connection owns what is running.
        Glib::signal_idle().connect_once([call, connection] {
            connection->disconnect();
            call();
        });
        return false;
    });
    Glib::signal_timeout().connect_once(call, longestWait);
}

} // namespace Overcurrent
