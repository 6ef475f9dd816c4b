#include "WindowIcons.h"

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>

#include <glibmm/error.h>

namespace Kes {

namespace {

using Icons = std::vector<Glib::RefPtr<Gdk::Pixbuf>>;

Icons load()
{
    Icons icons;
    try {
        for (const int size : {16, 24, 32, 48, 64, 128})
            icons.push_back(
                Gdk::Pixbuf::create_from_file(getThemesDir() + "Icons/Shell/Program.svg", size, size));
    } catch (const Glib::Error& error) {
        KesLog::Log::writeWarn("No window icon: " + error.what().raw());
    }
    return icons;
}

} // namespace

const Icons& getWindowIcons()
{
    static const Icons icons = load();
    return icons;
}

} // namespace Kes
