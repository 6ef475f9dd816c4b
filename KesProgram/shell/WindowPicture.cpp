#include <KesProgram/shell/WindowPicture.h>

#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>
#include <KesProgram/text/TextPair.h>

#include <cairomm/context.h>
#include <cairomm/surface.h>

namespace KesProgram {

namespace {

/// An empty text when there is nothing to draw.
std::string drawPng(Gtk::Window& window)
{
    const int scale = window.get_scale_factor();
    const auto surface = Cairo::ImageSurface::create(
        Cairo::FORMAT_ARGB32, window.get_allocated_width() * scale, window.get_allocated_height() * scale);
    cairo_surface_set_device_scale(surface->cobj(), scale, scale);
    gtk_widget_draw(GTK_WIDGET(window.gobj()), Cairo::Context::create(surface)->cobj());
    std::string png;
    surface->write_to_png_stream([&png](const unsigned char* bytes, unsigned int count) {
        png.append(reinterpret_cast<const char*>(bytes), count);
        return CAIRO_STATUS_SUCCESS;
    });
    return png;
}

} // namespace

Kes::Result WindowPicture::save(Gtk::Window& window, const std::string& path)
{
    static constexpr lng::TextPair failure{"The window cannot be drawn: %s", "Не удалось нарисовать окно: %s"};
    try {
        return Kes::writeWholeFile(path, drawPng(window));
    } catch (const std::exception& error) {
        return Kes::Result::failure(Kes::StringHelper::format(lng::choose(failure), std::string(error.what())));
    }
}

} // namespace KesProgram
