#include <KesCommonView/detail/WindowIcons.h>

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>

#include <glibmm/error.h>

namespace Kes {

namespace {

constexpr int largestSize = 128;

using Icons = std::vector<Glib::RefPtr<Gdk::Pixbuf>>;

Icons load()
{
    // Drawn once and scaled down: drawing each size would be felt in the time until the window is up.
    Icons icons;
    try {
        const auto largest = Gdk::Pixbuf::create_from_file(findDataFile("themes/Icons/Shell/Program.svg"),
                                                           largestSize, largestSize);
        for (const int size : {16, 24, 32, 48, 64})
            icons.push_back(largest->scale_simple(size, size, Gdk::INTERP_BILINEAR));
        icons.push_back(largest);
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
