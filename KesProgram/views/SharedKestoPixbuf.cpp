#include <KesProgram/views/SharedKestoPixbuf.h>

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>

namespace KesProgram {

namespace {

constexpr int size = 16; // pixels

Glib::RefPtr<Gdk::Pixbuf> load(const std::string& path)
{
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
    static const Glib::RefPtr<Gdk::Pixbuf> pixbuf =
        load(Kes::findDataFile("themes/Icons/Shell/КЕСТО-сервер.svg"));
    return pixbuf;
}

} // namespace KesProgram
