#include <KesCommonView/RoomyBox.h>

#include <algorithm>

namespace Kes {

RoomyBox::RoomyBox(Gtk::Orientation orientation, int spacing, int characters, int lines)
    : Gtk::Box(orientation, spacing), _characters(characters), _lines(lines)
{}

Pango::FontMetrics RoomyBox::_getMetrics() const
{
    // The context is the widget's own and stays as it is.
    const auto context = const_cast<RoomyBox*>(this)->get_pango_context();
    // pangomm's own function never gives the metrics back.
    return Pango::FontMetrics(
        pango_context_get_metrics(context->gobj(), context->get_font_description().gobj(), nullptr), false);
}

int RoomyBox::_getRoomyHeight() const
{
    const auto metrics = _getMetrics();
    return _lines * (metrics.get_ascent() + metrics.get_descent()) / Pango::SCALE;
}

void RoomyBox::get_preferred_width_vfunc(int& minimum, int& natural) const
{
    Gtk::Box::get_preferred_width_vfunc(minimum, natural);
    natural = std::max(natural, _characters * _getMetrics().get_approximate_char_width() / Pango::SCALE);
}

void RoomyBox::get_preferred_height_vfunc(int& minimum, int& natural) const
{
    Gtk::Box::get_preferred_height_vfunc(minimum, natural);
    natural = std::max(natural, _getRoomyHeight());
}

void RoomyBox::get_preferred_height_for_width_vfunc(int width, int& minimum, int& natural) const
{
    Gtk::Box::get_preferred_height_for_width_vfunc(width, minimum, natural);
    natural = std::max(natural, _getRoomyHeight());
}

} // namespace Kes
