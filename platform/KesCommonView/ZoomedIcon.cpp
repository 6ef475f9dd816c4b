#include <KesCommonView/ZoomedIcon.h>

#include <KesCommon/Log.h>
#include <KesCommonView/StyleZoomHelper.h>

#include <gtkmm/icontheme.h>

namespace Kes {

ZoomedIcon::ZoomedIcon(const std::string& icon, int size) : _size(size)
{
    setIcon(icon);
    _resize();
    KesView::StyleZoomHelper::signalZoomed().connect(sigc::mem_fun(*this, &ZoomedIcon::_resize));
}

void ZoomedIcon::setIcon(const std::string& icon)
{
    set_from_icon_name(icon, Gtk::ICON_SIZE_MENU);
}

bool ZoomedIcon::canShow(const std::string& icon)
{
    try {
        const auto found = Gtk::IconTheme::get_default()->lookup_icon(icon, 16);
        return found && found.load_icon();
    } catch (const Glib::Error& error) {
        KesLog::Log::writeWarn("Picture " + icon + ": " + error.what().raw());
        return false;
    }
}

void ZoomedIcon::_resize()
{
    set_pixel_size(_size * KesView::StyleZoomHelper::getZoom() / 100);
}

} // namespace Kes
