#include <KesCommonView/StyleZoomHelper.h>

#include <gtkmm/settings.h>

#include <algorithm>

namespace KesView {

namespace {

constexpr int minimum = 50;
constexpr int maximum = 200;
constexpr int step = 10;
constexpr int normal = 100;
/// In the setting's unit, 1024ths of a dot per inch; for a desktop that gives none.
constexpr int usualResolution = 96 * 1024;

int zoom = normal;

/// Text sizes, and with them all lengths in em, follow the resolution of the screen.
void setZoom(int percent)
{
    const auto settings = Gtk::Settings::get_default();
    zoom = std::clamp(percent, minimum, maximum);
    if (!settings)
        return;
    gtk_settings_reset_property(settings->gobj(), "gtk-xft-dpi");
    if (zoom == normal)
        return;
    auto resolution = settings->property_gtk_xft_dpi();
    const int desktop = resolution.get_value() > 0 ? resolution.get_value() : usualResolution;
    resolution.set_value(desktop / normal * zoom);
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

} // namespace KesView
