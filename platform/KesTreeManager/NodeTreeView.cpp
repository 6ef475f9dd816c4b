#include <KesTreeManager/NodeTreeView.h>

#include <KesTreeManager/KesTreeResources.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/ZoomedIcon.h>

#include <gtkmm/adjustment.h>
#include <gtkmm/expander.h>
#include <gtkmm/label.h>

namespace KesTree {

namespace {

constexpr int rowGap = 6;
constexpr int groupGap = 12;
constexpr int margin = 12;
constexpr int pictureSize = 24;
/// In pixels; a form that is higher than this scrolls unless its window is made higher.
constexpr int naturalHeight = 780;

Gtk::Box& makeHeading(const std::string& title, const std::string& icon)
{
    auto& heading = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_HORIZONTAL, rowGap);
    auto& label = *Gtk::make_managed<Gtk::Label>(title, Gtk::ALIGN_START);
    label.set_line_wrap(true);
    label.get_style_context()->add_class("kes-node-heading");
    // A program's own groups may have none.
    if (Kes::ZoomedIcon::canShow(icon))
        heading.pack_start(*Gtk::make_managed<Kes::ZoomedIcon>(icon, pictureSize), Gtk::PACK_SHRINK);
    heading.pack_start(label, Gtk::PACK_EXPAND_WIDGET);
    return heading;
}

} // namespace

NodeTreeView::NodeTreeView() : _content(Gtk::ORIENTATION_VERTICAL, groupGap)
{
    KesTreeResources::Integrate();
    get_style_context()->add_class("kes-node-tree");
    set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    set_propagate_natural_width(true);
    set_propagate_natural_height(true);
    set_max_content_height(naturalHeight);
    _content.property_margin() = margin;
    _content.set_focus_vadjustment(get_vadjustment());
    _columns.add(_content);
    add(_columns);
    show_all();
}

void NodeTreeView::beginGroup(const std::string& title, const std::string& icon, bool isFolded)
{
    auto& heading = makeHeading(title, icon);
    auto& rows = _open.empty() ? _addRootGroup(heading) : _addInnerGroup(title, heading, isFolded);
    Kes::GtkWidgetHelper::setAccessibleName(rows, title);
    _open.push_back(&rows);
    _content.show_all();
}

Gtk::Box& NodeTreeView::_addRootGroup(Gtk::Widget& heading)
{
    auto& rows = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_VERTICAL, rowGap);
    heading.set_margin_bottom(rowGap);
    rows.pack_start(heading, Gtk::PACK_SHRINK);
    _content.pack_start(rows, Gtk::PACK_SHRINK);
    return rows;
}

Gtk::Box& NodeTreeView::_addInnerGroup(const std::string& title, Gtk::Widget& heading, bool isFolded)
{
    auto& rows = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_VERTICAL, rowGap);
    rows.set_margin_top(rowGap);
    rows.set_margin_start(margin);
    auto& expander = *Gtk::make_managed<Gtk::Expander>();
    heading.set_margin_start(rowGap);
    expander.set_label_widget(heading);
    expander.set_label_fill(true);
    // A label widget that is no label gives it none.
    Kes::GtkWidgetHelper::setAccessibleName(expander, title);
    expander.set_expanded(!isFolded);
    expander.set_margin_top(rowGap);
    expander.add(rows);
    _open.back()->pack_start(expander, Gtk::PACK_SHRINK);
    return rows;
}

void NodeTreeView::endGroup()
{
    _open.pop_back();
}

void NodeTreeView::addValue(Kes::IView& value)
{
    auto& widget = dynamic_cast<Gtk::Widget&>(value);
    (_open.empty() ? _content : *_open.back()).pack_start(widget, Gtk::PACK_SHRINK);
}

void NodeTreeView::setIsReadOnly(bool readOnly)
{
    signalReadOnlyChanged.emit(readOnly);
}

} // namespace KesTree
