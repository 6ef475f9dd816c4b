#include <KesProgram/views/SharedKestoPixbuf.h>

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>
#include <KesCommonView/StyleZoomHelper.h>

#include <utility>

namespace KesProgram {

namespace {

constexpr int normalSize = 16;  // pixels
constexpr int normalZoom = 100; // per cent

Glib::RefPtr<Gdk::Pixbuf> load(int size)
{
    const std::string path = Kes::findDataFile("themes/Icons/Shell/КЕСТО-сервер.svg");
    try {
        return Gdk::Pixbuf::create_from_file(path, size, size, true);
    } catch (const Glib::Error& error) {
        KesLog::Log::writeWarn("Cannot read the picture " + path + ": " + error.what().raw());
        return {};
    }
}

} // namespace

Glib::RefPtr<Gdk::Pixbuf> getSharedKestoPixbuf()
{
    static const Glib::RefPtr<Gdk::Pixbuf> pixbuf = load(normalSize);
    return pixbuf;
}

Glib::RefPtr<Gdk::Pixbuf> getZoomedKestoPixbuf()
{
    static int shownZoom = normalZoom;
    static Glib::RefPtr<Gdk::Pixbuf> pixbuf;
    const int zoom = KesView::StyleZoomHelper::getZoom();
    if (zoom == normalZoom)
        return getSharedKestoPixbuf();
    if (std::exchange(shownZoom, zoom) != zoom || !pixbuf)
        pixbuf = load(normalSize * zoom / normalZoom);
    return pixbuf;
}

} // namespace KesProgram
