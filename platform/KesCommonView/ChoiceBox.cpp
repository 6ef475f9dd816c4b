#include <KesCommonView/ChoiceBox.h>

#include <gtkmm/cellrenderertext.h>

namespace Kes {

ChoiceBox::ChoiceBox()
{
    for (auto* cell : get_cells())
        if (auto* text = dynamic_cast<Gtk::CellRendererText*>(cell))
            text->property_ellipsize() = Pango::ELLIPSIZE_END;
}

bool ChoiceBox::on_scroll_event(GdkEventScroll*)
{
    return false;
}

} // namespace Kes
