#include <KesCommonView/StyleZoomHelper.h>

#include <glibmm/main.h>
#include <gtkmm/settings.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <utility>

namespace KesView {

namespace {

constexpr int minimum = 50;
constexpr int maximum = 200;
constexpr int step = 10;
constexpr int normal = 100;
/// In the setting's unit, 1024ths of a dot per inch; for a desktop that gives none.
constexpr int usualResolution = 96 * 1024;

int zoom = normal;
/// What the screen shows.
int applied = normal;
sigc::connection applying;
/// The desktop's own setting, kept while another zoom is on; not above zero when it has none.
int desktopResolution = 0;

/// What has been measured at another resolution must not decide any more. An entry places its text by metrics
/// that Pango keeps when the resolution changes.
void measureAgain(GtkWidget* widget, gpointer)
{
    if (GTK_IS_ENTRY(widget))
        pango_context_changed(gtk_widget_get_pango_context(widget));
    gtk_widget_queue_resize(widget);
    if (GTK_IS_CONTAINER(widget) && !GTK_IS_ENTRY(widget))
        gtk_container_forall(GTK_CONTAINER(widget), measureAgain, nullptr);
}

/// Text sizes, and with them all lengths in em, follow the resolution of the screen.
bool apply()
{
    const int previous = std::exchange(applied, zoom);
    const auto settings = Gtk::Settings::get_default();
    if (!settings || zoom == previous)
        return false;
    auto resolution = settings->property_gtk_xft_dpi();
    if (previous == normal)
        desktopResolution = resolution.get_value();
    if (zoom == normal) {
        resolution.set_value(desktopResolution);
        // From now on the desktop's changes count again.
        gtk_settings_reset_property(settings->gobj(), "gtk-xft-dpi");
    } else {
        const int base = desktopResolution > 0 ? desktopResolution : usualResolution;
        resolution.set_value(base / normal * zoom);
    }
    for (auto* window : Gtk::Window::list_toplevels())
        measureAgain(GTK_WIDGET(window->gobj()), nullptr);
    StyleZoomHelper::signalZoomed().emit();
    return false;
}

void setZoom(int percent)
{
    zoom = std::clamp(percent, minimum, maximum);
    // Each zoom lays all windows out again, and keys repeat faster than that.
    if (!applying.connected())
        applying = Glib::signal_idle().connect(sigc::ptr_fun(apply));
}

} // namespace

void StyleZoomHelper::zoomIn()
{
    setZoom(zoom + step);
}

void StyleZoomHelper::zoomOut()
{
    setZoom(zoom - step);
}

void StyleZoomHelper::zoomDefault()
{
    setZoom(normal);
}

int StyleZoomHelper::getZoom()
{
    return zoom;
}

sigc::signal<void()>& StyleZoomHelper::signalZoomed()
{
    static sigc::signal<void()> signal;
    return signal;
}

} // namespace KesView
