#include <Overcurrent/view/ResultsView.h>

#include <Overcurrent/text/OvercurrentText.h>
#include <Overcurrent/view/MarkText.h>

#include <KesCommonView/GtkWidgetHelper.h>

#include <gtkmm/label.h>

#include <algorithm>

namespace Overcurrent {

namespace {

using lng::Overcurrent::get;

} // namespace

ResultsView::Columns::Columns()
{
    for (auto* column : {&number, &multiple, &current, &expected, &measured, &deviation, &deviationPercent,
                         &tolerance, &verdict})
        add(*column);
    add(weight);
}

ResultsView::ResultsView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL),
      _store(Gtk::ListStore::create(_columns)),
      _table(_store),
      _values(Gtk::ORIENTATION_HORIZONTAL, 18)
{
    get_style_context()->add_class("results");
    _addColumn("Results.number", _columns.number, 1.0f);
    _addColumn("Results.multiple", _columns.multiple, 1.0f);
    _addColumn("Results.current", _columns.current, 1.0f);
    _addColumn("Results.expected", _columns.expected, 1.0f);
    _addColumn("Results.measured", _columns.measured, 1.0f);
    _addColumn("Results.deviation", _columns.deviation, 1.0f);
    _addColumn("Results.deviationPercent", _columns.deviationPercent, 1.0f);
    _addColumn("Results.tolerance", _columns.tolerance, 1.0f);
    _addColumn("Results.verdict", _columns.verdict, 0.0f);
    Kes::GtkWidgetHelper::setAccessibleName(_table, get("Results.title"));
    _scroller.set_policy(Gtk::POLICY_AUTOMATIC, Gtk::POLICY_AUTOMATIC);
    _scroller.set_shadow_type(Gtk::SHADOW_IN);
    _scroller.set_min_content_height(90);
    _scroller.add(_table);
    _values.get_style_context()->add_class("result-values");
    pack_start(_scroller, Gtk::PACK_EXPAND_WIDGET);
    pack_start(_values, Gtk::PACK_SHRINK);
}

void ResultsView::get_preferred_height_vfunc(int& minimum, int& natural) const
{
    Gtk::Box::get_preferred_height_vfunc(minimum, natural);
    int valuesMinimum = 0;
    int valuesNatural = 0;
    _values.get_preferred_height(valuesMinimum, valuesNatural);
    // Three lines and a little; the table wants room for eight rows and its header.
    natural = std::max(natural, valuesNatural * 11 / 2);
}

void ResultsView::_addColumn(const char* titleKey, const Gtk::TreeModelColumn<Glib::ustring>& column,
                             float alignment)
{
    auto& renderer = *Gtk::manage(new Gtk::CellRendererText());
    renderer.property_xalign() = alignment;
    auto& view = *Gtk::manage(new Gtk::TreeViewColumn(get(titleKey), renderer));
    view.add_attribute(renderer.property_text(), column);
    view.add_attribute(renderer.property_weight(), _columns.weight);
    view.set_alignment(alignment);
    view.set_resizable(true);
    view.set_expand(true);
    _table.append_column(view);
}

void ResultsView::_fill(const Gtk::TreeRow& line, const ResultRow& row)
{
    line[_columns.number] = row.number;
    line[_columns.multiple] = row.multiple;
    line[_columns.current] = row.current;
    line[_columns.expected] = row.expected;
    line[_columns.measured] = row.measured;
    line[_columns.deviation] = row.deviation;
    line[_columns.deviationPercent] = row.deviationPercent;
    line[_columns.tolerance] = row.tolerance;
    line[_columns.verdict] = withSign(row.verdict, row.mark);
    line[_columns.weight] = row.mark == Mark::Failed ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL;
}

void ResultsView::setRows(const std::vector<ResultRow>& rows)
{
    if (rows == _rows)
        return;
    const auto [shown, present] = std::mismatch(_rows.begin(), _rows.end(), rows.begin(), rows.end());
    const bool isGrowing = !_rows.empty() && shown == _rows.end();
    if (!isGrowing)
        _store->clear();
    for (auto row = isGrowing ? present : rows.begin(); row != rows.end(); ++row)
        _fill(*_store->append(), *row);
    _rows = rows;
    // Other results begin at the top; those of a test under way are followed.
    if (!_rows.empty())
        _table.scroll_to_row(Gtk::TreePath(std::to_string(isGrowing ? _rows.size() - 1 : 0)));
}

void ResultsView::setValues(const std::vector<ResultValue>& values)
{
    Kes::GtkWidgetHelper::removeChildren(_values);
    for (const auto& value : values) {
        auto& box = *Gtk::manage(new Gtk::Box(Gtk::ORIENTATION_VERTICAL));
        auto& name = *Gtk::manage(new Gtk::Label(value.name, Gtk::ALIGN_START));
        name.get_style_context()->add_class("dim-label");
        auto& text = *Gtk::manage(new Gtk::Label(value.value, Gtk::ALIGN_START));
        text.get_style_context()->add_class("result-value");
        auto& verdict = *Gtk::manage(new Gtk::Label(withSign(value.verdict, value.mark), Gtk::ALIGN_START));
        verdict.get_style_context()->add_class(styleClass(value.mark));
        for (auto* label : {&name, &text, &verdict})
            box.pack_start(*label, Gtk::PACK_SHRINK);
        _values.pack_start(box, Gtk::PACK_EXPAND_WIDGET);
    }
    _values.show_all();
}

} // namespace Overcurrent
