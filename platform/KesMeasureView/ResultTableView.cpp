#include <KesMeasureView/ResultTableView.h>

#include <KesMeasure/MeasureText.h>
#include <KesMeasureView/MarkText.h>

#include <KesCommon/StringHelper.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/StyleZoomHelper.h>

#include <gtkmm/label.h>

#include <algorithm>

namespace KesMeasure {

namespace {

/// In pixels at a zoom of 100 %, of what is seen of the table.
constexpr int leastHeight = 90;

std::string verdictOf(const ResultTable::Row& row)
{
    return row.cells.back().empty() ? lng::Measure::get("State.planned")
                                    : withSign(row.cells.back(), row.mark);
}

} // namespace

ResultTableView::Columns::Columns(std::size_t count) : cells(count)
{
    for (auto& cell : cells)
        add(cell);
    add(weight);
}

ResultTableView::ResultTableView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL),
      _values(Gtk::ORIENTATION_HORIZONTAL, 18),
      _commands(Gtk::ORIENTATION_HORIZONTAL),
      _repeat(lng::Measure::get("Results.repeat")),
      _continue(lng::Measure::get("Results.continue")),
      _repeatItem(lng::Measure::get("Results.repeat")),
      _continueItem(lng::Measure::get("Results.continue"))
{
    get_style_context()->add_class("results");
    Kes::GtkWidgetHelper::setAccessibleName(_table, lng::Measure::get("Results.title"));
    _scroller.set_policy(Gtk::POLICY_AUTOMATIC, Gtk::POLICY_AUTOMATIC);
    _scroller.set_shadow_type(Gtk::SHADOW_IN);
    _followZoom();
    KesView::StyleZoomHelper::signalZoomed().connect(sigc::mem_fun(*this, &ResultTableView::_followZoom));
    _scroller.add(_table);
    _values.get_style_context()->add_class("result-values");
    _commands.get_style_context()->add_class("result-commands");
    for (auto* button : {&_repeat, &_continue})
        _commands.pack_start(*button, Gtk::PACK_SHRINK);
    _table.get_selection()->set_mode(Gtk::SELECTION_MULTIPLE);
    _createMenu();
    _updateCommands();
    pack_start(_scroller, Gtk::PACK_EXPAND_WIDGET);
    pack_start(_commands, Gtk::PACK_SHRINK);
    // Several values are wider than a small window.
    _valuesScroller.set_policy(Gtk::POLICY_AUTOMATIC, Gtk::POLICY_NEVER);
    _valuesScroller.add(_values);
    // Bars that show themselves only under the mouse would not show that verdicts stand further to the right.
    for (auto* scroller : {&_scroller, &_valuesScroller})
        scroller->set_overlay_scrolling(false);
    pack_start(_valuesScroller, Gtk::PACK_SHRINK);
}

/// The bar beside the rows gets what the header leaves, and would not fit.
void ResultTableView::_followZoom()
{
    _scroller.set_min_content_height(leastHeight * KesView::StyleZoomHelper::getZoom() / 100);
}

void ResultTableView::_createMenu()
{
    const auto repeat = [this] { signalRepeat.emit(_getSelected()); };
    const auto goOn = [this] { signalContinue.emit(); };
    _repeat.signal_clicked().connect(repeat);
    _continue.signal_clicked().connect(goOn);
    _repeatItem.signal_activate().connect(repeat);
    _continueItem.signal_activate().connect(goOn);
    for (auto* item : {&_repeatItem, &_continueItem})
        _menu.append(*item);
    _menu.show_all();
    _menu.attach_to_widget(_table);
    _table.get_selection()->signal_changed().connect(sigc::mem_fun(*this, &ResultTableView::_updateCommands));
    _table.signal_button_press_event().connect(sigc::mem_fun(*this, &ResultTableView::_onButton), false);
    _table.signal_popup_menu().connect([this] { return _showMenu(nullptr); });
}

/// Upon a selected row the selection stays, upon another one it goes there.
bool ResultTableView::_onButton(GdkEventButton* event)
{
    const auto* any = reinterpret_cast<GdkEvent*>(event);
    if (!gdk_event_triggers_context_menu(any))
        return false;
    Gtk::TreePath path;
    const bool isRow = _table.get_path_at_pos(static_cast<int>(event->x), static_cast<int>(event->y), path);
    const auto selection = _table.get_selection();
    if (isRow && !selection->is_selected(path))
        _table.set_cursor(path);
    return _showMenu(any);
}

bool ResultTableView::_showMenu(const GdkEvent* event)
{
    if (event)
        _menu.popup_at_pointer(event);
    else
        _menu.popup_at_widget(&_table, Gdk::GRAVITY_CENTER, Gdk::GRAVITY_CENTER, nullptr);
    return true;
}

void ResultTableView::setCommands(const std::string& whyNotRepeat, const std::string& whyNotContinue)
{
    _whyNotRepeat = whyNotRepeat;
    _whyNotContinue = whyNotContinue;
    _updateCommands();
}

void ResultTableView::_updateCommands()
{
    using lng::Measure::get;
    const auto offer = [](Gtk::Button& button, Gtk::MenuItem& item, const std::string& whyNot,
                          const char* tip, bool isTold) {
        const std::string text = whyNot.empty() ? tip : whyNot;
        for (Gtk::Widget* widget : {static_cast<Gtk::Widget*>(&button), static_cast<Gtk::Widget*>(&item)}) {
            widget->set_sensitive(whyNot.empty());
            Kes::GtkWidgetHelper::setTooltip(*widget, text, isTold ? text : std::string());
        }
    };
    const bool isNoneSelected = _whyNotRepeat.empty() && _getSelected().empty();
    offer(_repeat, _repeatItem, isNoneSelected ? get("Results.noneSelected") : _whyNotRepeat,
          get("Results.repeatTip"), true);
    for (auto* button : _valueButtons) {
        button->set_sensitive(_whyNotRepeat.empty());
        Kes::GtkWidgetHelper::setTooltip(*button, _whyNotRepeat.empty() ? get("Results.repeatValueTip")
                                                                        : _whyNotRepeat);
    }
    // What keeps both off is said once.
    offer(_continue, _continueItem, _whyNotContinue, get("Results.continueTip"),
          _whyNotContinue.empty() || _whyNotContinue != _whyNotRepeat);
}

std::vector<std::size_t> ResultTableView::_getSelected() const
{
    std::vector<std::size_t> selected;
    for (const auto& path : _table.get_selection()->get_selected_rows()) {
        const auto row = static_cast<std::size_t>(path.front());
        if (row < _rows.size() && _rows[row].mark != Mark::None)
            selected.push_back(row);
    }
    return selected;
}

void ResultTableView::setTable(const ResultTable& table)
{
    if (table.columns != _shownColumns)
        _setColumns(table.columns);
    _setRows(table.rows);
    _setValues(table.values);
    _updateCommands();
}

void ResultTableView::_setColumns(const std::vector<ResultTable::Column>& columns)
{
    _table.unset_model();
    _table.remove_all_columns();
    _rows.clear();
    _shownColumns = columns;
    _columns = std::make_unique<Columns>(columns.size());
    _store = Gtk::ListStore::create(*_columns);
    _table.set_model(_store);
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].isInWindow)
            _addColumn(columns[i], i);
}

void ResultTableView::get_preferred_height_vfunc(int& minimum, int& natural) const
{
    Gtk::Box::get_preferred_height_vfunc(minimum, natural);
    int valuesMinimum = 0;
    int valuesNatural = 0;
    _values.get_preferred_height(valuesMinimum, valuesNatural);
    int commandsMinimum = 0;
    int commandsNatural = 0;
    _commands.get_preferred_height(commandsMinimum, commandsNatural);
    // Three lines and a little; the table wants room for eight rows and its header.
    natural = std::max(natural, valuesNatural * 11 / 2 + commandsNatural);
}

void ResultTableView::_addColumn(const ResultTable::Column& column, std::size_t index)
{
    const float alignment = column.isNumber ? 1.0f : 0.0f;
    auto& renderer = *Gtk::manage(new Gtk::CellRendererText());
    renderer.property_xalign() = alignment;
    auto& view = *Gtk::manage(new Gtk::TreeViewColumn(column.title, renderer));
    view.add_attribute(renderer.property_text(), _columns->cells[index]);
    view.add_attribute(renderer.property_weight(), _columns->weight);
    view.set_alignment(alignment);
    view.set_resizable(true);
    view.set_expand(true);
    _table.append_column(view);
}

void ResultTableView::_fill(const Gtk::TreeRow& line, const ResultTable::Row& row)
{
    const auto count = std::min(row.cells.size(), _columns->cells.size());
    for (std::size_t i = 0; i < count; ++i)
        line[_columns->cells[i]] = i + 1 < count ? row.cells[i] : verdictOf(row);
    line[_columns->weight] = row.mark == Mark::Failed ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL;
}

void ResultTableView::_setRows(const std::vector<ResultTable::Row>& rows)
{
    if (rows == _rows)
        return;
    const auto [shown, present] = std::mismatch(_rows.begin(), _rows.end(), rows.begin(), rows.end());
    const bool isGrowing = !_rows.empty() && shown == _rows.end();
    if (!_rows.empty() && rows.size() == _rows.size()) {
        _refill(rows);
        return;
    }
    if (!isGrowing)
        _store->clear();
    for (auto row = isGrowing ? present : rows.begin(); row != rows.end(); ++row)
        _fill(*_store->append(), *row);
    _rows = rows;
    // Other results begin at the top; those of a test under way are followed.
    if (!_rows.empty())
        _table.scroll_to_row(Gtk::TreePath(std::to_string(isGrowing ? _rows.size() - 1 : 0)));
}

/// Rows that stand there before they are measured are filled one after the other, and followed.
void ResultTableView::_refill(const std::vector<ResultTable::Row>& rows)
{
    const bool isOther = rows.front() != _rows.front();
    std::size_t last = 0;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i] != _rows[i]) {
            _fill(*_store->get_iter(Gtk::TreePath(std::to_string(i))), rows[i]);
            last = i;
        }
    _rows = rows;
    _table.scroll_to_row(Gtk::TreePath(std::to_string(isOther ? 0 : last)));
}

void ResultTableView::_setValues(const std::vector<ResultTable::Value>& values)
{
    if (values == _shownValues)
        return;
    _shownValues = values;
    _valueButtons.clear();
    Kes::GtkWidgetHelper::removeChildren(_values);
    for (const auto& value : values) {
        auto& box = *Gtk::manage(new Gtk::Box(Gtk::ORIENTATION_VERTICAL));
        auto& name = *Gtk::manage(new Gtk::Label(value.name, Gtk::ALIGN_START));
        name.get_style_context()->add_class("dim-label");
        auto& text = *Gtk::manage(new Gtk::Label(value.value, Gtk::ALIGN_START));
        text.get_style_context()->add_class("result-value");
        auto& verdict = *Gtk::manage(new Gtk::Label(withSign(value.verdict, value.mark), Gtk::ALIGN_START));
        verdict.get_style_context()->add_class(styleClass(value.mark));
        auto& line = *Gtk::manage(new Gtk::Box(Gtk::ORIENTATION_HORIZONTAL));
        line.pack_start(verdict, Gtk::PACK_SHRINK);
        if (value.row)
            line.pack_start(_makeRepeatButton(value), Gtk::PACK_SHRINK);
        for (Gtk::Widget* widget : {static_cast<Gtk::Widget*>(&name), static_cast<Gtk::Widget*>(&text),
                                    static_cast<Gtk::Widget*>(&line)})
            box.pack_start(*widget, Gtk::PACK_SHRINK);
        _values.pack_start(box, Gtk::PACK_EXPAND_WIDGET);
    }
    _values.show_all();
}

Gtk::Button& ResultTableView::_makeRepeatButton(const ResultTable::Value& value)
{
    auto& button = *Gtk::manage(new Gtk::Button(lng::Measure::get("Results.repeatValue")));
    const std::string name =
        Kes::StringHelper::format(lng::Measure::get("Results.repeatValueName"), value.name);
    Kes::GtkWidgetHelper::setAccessibleName(button, name);
    button.get_style_context()->add_class("result-repeat");
    button.signal_clicked().connect([this, row = *value.row] { signalRepeat.emit({row}); });
    _valueButtons.push_back(&button);
    return button;
}

} // namespace KesMeasure
