#include <KesProgram/shell/WindowPicture.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>

#include <gdkmm/pixbuf.h>
#include <gdkmm/window.h>

#include <memory>
#include <stdexcept>

namespace KesProgram {

namespace {

/// What the window system holds of the window. Drawing its widgets anew would not do: a scrolled table draws
/// its header in the wrong place then.
std::string readPng(Gtk::Window& window)
{
    const auto content = window.get_window();
    const auto picture = content
                             ? Gdk::Pixbuf::create(content, 0, 0, content->get_width(), content->get_height())
                             : Glib::RefPtr<Gdk::Pixbuf>();
    if (!picture)
        throw std::runtime_error("the window is not shown");
    gchar* bytes = nullptr;
    gsize count = 0;
    picture->save_to_buffer(bytes, count, "png");
    const std::unique_ptr<gchar, decltype(&g_free)> owner(bytes, &g_free);
    return std::string(bytes, count);
}

} // namespace

Kes::Result WindowPicture::save(Gtk::Window& window, const std::string& path)
{
    static constexpr lng::Text failure{"Unattended.noPicture", "No picture of the window can be made: %s",
                                       "Не удалось сделать снимок окна: %s"};
    try {
        return Kes::writeWholeFile(path, readPng(window));
    } catch (...) {
        return Kes::Result::failure(Kes::StringHelper::format(failure.get(), Kes::getCurrentExceptionText()));
    }
}

} // namespace KesProgram
