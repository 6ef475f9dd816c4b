#include <KesCommonView/CollectionBoxView.h>

#include <KesCommonView/GtkWidgetHelper.h>

namespace Kes {

CollectionBoxView::CollectionBoxView(Gtk::Orientation orientation) : Gtk::Box(orientation) {}

void CollectionBoxView::insertView(std::size_t index, IView* view)
{
    auto* widget = dynamic_cast<Gtk::Widget*>(view);
    if (!widget)
        return;
    pack_start(*widget, Gtk::PACK_SHRINK);
    reorder_child(*widget, static_cast<int>(index));
    widget->show_all();
}

void CollectionBoxView::removeView(IView* view)
{
    auto* widget = dynamic_cast<Gtk::Widget*>(view);
    if (widget && widget->get_parent() == this)
        GtkWidgetHelper::removeChild(*this, *widget);
}

} // namespace Kes
