#include <KesCommonView/ZoomedIcon.h>

#include <KesCommonView/StyleZoomHelper.h>

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

void ZoomedIcon::_resize()
{
    set_pixel_size(_size * KesView::StyleZoomHelper::getZoom() / 100);
}

} // namespace Kes
