#include <KesCommonView/Window.h>

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>

#include <gdkmm/pixbuf.h>
#include <glibmm/error.h>

#include <vector>

namespace Kes {

namespace {

using Icons = std::vector<Glib::RefPtr<Gdk::Pixbuf>>;

Icons loadIcons()
{
    Icons icons;
    try {
        for (const int size : {16, 24, 32, 48, 64, 128})
            icons.push_back(Gdk::Pixbuf::create_from_file(getThemesDir() + "Icons/Shell/Program.svg", size, size));
    } catch (const Glib::Error& error) {
        KesLog::Log::writeWarn("No window icon: " + error.what().raw());
    }
    return icons;
}

} // namespace

Window::Window()
{
    static const Icons icons = loadIcons();
    set_icon_list(icons);
}

Window::~Window() = default;

} // namespace Kes
