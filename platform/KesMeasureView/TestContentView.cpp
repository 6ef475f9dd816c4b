#include <KesMeasureView/TestContentView.h>

#include <KesCommonView/Style.h>

namespace KesMeasure {

namespace {

Gtk::Widget& widgetOf(Kes::IView& view)
{
    return dynamic_cast<Gtk::Widget&>(view);
}

} // namespace

TestContentView::TestContentView(Kes::IView& settings, Kes::IView& plan, Kes::IView& planError,
                                 Kes::IView& outcome, Kes::IView& chart, Kes::IView& results)
    : TestContentView(settings, outcome, chart, results)
{
    _left.pack_start(widgetOf(plan), Gtk::PACK_SHRINK);
    _leftColumn.pack_start(widgetOf(planError), Gtk::PACK_SHRINK);
}

TestContentView::TestContentView(Kes::IView& settings, Kes::IView& outcome, Kes::IView& chart,
                                 Kes::IView& results)
    : Gtk::Paned(Gtk::ORIENTATION_HORIZONTAL),
      _leftColumn(Gtk::ORIENTATION_VERTICAL),
      _left(Gtk::ORIENTATION_VERTICAL),
      _right(Gtk::ORIENTATION_VERTICAL),
      _measured(Gtk::ORIENTATION_VERTICAL)
{
    KesView::Style::setStyle("KesMeasure/KesMeasure.css");
    get_style_context()->add_class("content");
    _left.get_style_context()->add_class("content-left");
    _left.pack_start(widgetOf(settings), Gtk::PACK_SHRINK);
    _leftScroller.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    _leftScroller.set_propagate_natural_height(true);
    _leftScroller.add(_left);
    _right.get_style_context()->add_class("content-right");
    _measured.pack1(widgetOf(chart), true, false);
    _measured.pack2(widgetOf(results), true, false);
    _right.pack_start(widgetOf(outcome), Gtk::PACK_SHRINK);
    _measuredScroller.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    _measuredScroller.set_propagate_natural_height(true);
    _measuredScroller.add(_measured);
    _right.pack_start(_measuredScroller, Gtk::PACK_EXPAND_WIDGET);
    // Always seen where something does not fit, not only under the mouse.
    for (auto* scroller : {&_leftScroller, &_measuredScroller})
        scroller->set_overlay_scrolling(false);
    _leftColumn.pack_start(_leftScroller, Gtk::PACK_EXPAND_WIDGET);
    pack1(_leftColumn, false, false);
    pack2(_right, true, false);
}

} // namespace KesMeasure
