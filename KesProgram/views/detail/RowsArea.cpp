#include <KesProgram/views/detail/RowsArea.h>

#include <algorithm>

namespace KesProgram {

namespace {

/// In lines of text with the distance between rows.
constexpr double mostLines = 5.5;

} // namespace

RowsArea::RowsArea()
{
    set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    set_propagate_natural_width(true);
    set_propagate_natural_height(true);
    // A bar that shows itself only under the mouse would not show that there are more rows.
    set_overlay_scrolling(false);
}

int RowsArea::_getMost(int all) const
{
    // The layout is the widget's own and stays as it is.
    int width = 0;
    int line = 0;
    const_cast<RowsArea*>(this)->create_pango_layout("1")->get_pixel_size(width, line);
    return std::min(all, static_cast<int>(mostLines * line));
}

void RowsArea::get_preferred_height_vfunc(int& minimum, int& natural) const
{
    Gtk::ScrolledWindow::get_preferred_height_vfunc(minimum, natural);
    natural = std::max(minimum, _getMost(natural));
}

void RowsArea::get_preferred_height_for_width_vfunc(int width, int& minimum, int& natural) const
{
    Gtk::ScrolledWindow::get_preferred_height_for_width_vfunc(width, minimum, natural);
    int least = 0;
    int all = 0;
    if (const auto* child = get_child())
        child->get_preferred_height_for_width(width, least, all);
    natural = std::max(minimum, _getMost(all));
}

} // namespace KesProgram
