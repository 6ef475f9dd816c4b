#include <KesProgram/shell/WindowPicture.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>

#include <cairomm/context.h>
#include <glibmm/main.h>

#include <stdexcept>
#include <utility>

namespace KesProgram {

namespace {

/// After these frames a change made before has been laid out and drawn.
constexpr int framesUntilDrawn = 3;
/// A window that is not drawn at all must not hold up its user. Milliseconds.
constexpr unsigned longestWait = 2000;

/// The place of what the window holds. Where programs draw their own title bars and shadows, these lie
/// around it.
Gdk::Rectangle getContentArea(Gtk::Window& window)
{
    const auto* content = window.get_child();
    return content ? content->get_allocation() : window.get_allocation();
}

/// `drawn` has the coordinates of the window.
Cairo::RefPtr<Cairo::ImageSurface> copy(const Cairo::RefPtr<Cairo::Surface>& drawn, const Gdk::Rectangle& area,
                                        int scale)
{
    const auto picture =
        Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, area.get_width() * scale, area.get_height() * scale);
    cairo_surface_set_device_scale(picture->cobj(), scale, scale);
    const auto context = Cairo::Context::create(picture);
    context->set_source(drawn, -area.get_x(), -area.get_y());
    context->paint();
    return picture;
}

std::string toPng(const Cairo::RefPtr<Cairo::ImageSurface>& picture)
{
    std::string bytes;
    picture->write_to_png_stream([&bytes](const unsigned char* data, unsigned length) {
        bytes.append(reinterpret_cast<const char*>(data), length);
        return CAIRO_STATUS_SUCCESS;
    });
    return bytes;
}

} // namespace

WindowPicture::WindowPicture(Gtk::Window& window, std::function<void()> whenTaken)
    : _window(window), _whenTaken(std::move(whenTaken))
{
    _drawConnection = _window.signal_draw().connect(sigc::mem_fun(*this, &WindowPicture::_onDrawn), true);
    _window.queue_draw();
    Glib::signal_timeout().connect_once(sigc::mem_fun(*this, &WindowPicture::_end), longestWait);
}

WindowPicture::~WindowPicture()
{
    _drawConnection.disconnect();
}

bool WindowPicture::_onDrawn(const Cairo::RefPtr<Cairo::Context>& context)
{
    if (++_drawnFrames < framesUntilDrawn) {
        _window.queue_draw();
        return false;
    }
    _drawConnection.disconnect();
    _picture = copy(context->get_target(), getContentArea(_window), _window.get_scale_factor());
    Glib::signal_idle().connect_once(sigc::mem_fun(*this, &WindowPicture::_end));
    return false;
}

void WindowPicture::_end()
{
    _drawConnection.disconnect();
    if (const auto whenTaken = std::exchange(_whenTaken, nullptr))
        whenTaken();
}

Kes::Result WindowPicture::save(const std::string& path) const
{
    static constexpr lng::Text failure{"Unattended.noPicture", "No picture of the window can be made: %s",
                                       "Не удалось сделать снимок окна: %s"};
    try {
        if (!_picture)
            throw std::runtime_error("the window is not shown");
        return Kes::writeWholeFile(path, toPng(_picture));
    } catch (...) {
        return Kes::Result::failure(Kes::StringHelper::format(failure.get(), Kes::getCurrentExceptionText()));
    }
}

} // namespace KesProgram
