#include <Overcurrent/view/PlanView.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/UnitText.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesMeasure/MeasureText.h>

#include <atkmm/object.h>

#include <algorithm>

namespace Overcurrent {

namespace {

using lng::Overcurrent::get;

Gtk::Label& makeLabel(const std::string& text)
{
    auto& label = *Gtk::manage(new Gtk::Label(text, Gtk::ALIGN_START));
    label.get_style_context()->add_class("dim-label");
    return label;
}

PlanField next(PlanField field, std::size_t by)
{
    return static_cast<PlanField>(static_cast<std::size_t>(field) + by);
}

} // namespace

PlanView::PlanView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL), _title(lng::Measure::get("Caption.plan"), Gtk::ALIGN_START)
{
    get_style_context()->add_class("section");
    _title.get_style_context()->add_class("section-title");
    _form.get_style_context()->add_class("section-lines");
    _error.get_style_context()->add_class("plan-error");
    _error.set_line_wrap(true);
    _error.set_xalign(0.0f);
    _error.set_max_width_chars(30);
    _error.set_no_show_all(true);
    auto& multiples = _prepareEntry(PlanField::Multiples);
    multiples.set_tooltip_text(get("PlanView.multiplesTip"));
    _addLabel(PlanTexts::nameOf(PlanField::Multiples) + ", " + lng::Unit::timesSetting.get(), 0, 3);
    ++_row;
    _form.attach(multiples, 0, _row++, 3, 1);
    _addFaults();
    _addChoices();
    _addRow(PlanField::Repetitions, lng::Unit::none);
    _addRow(PlanField::Timeout, lng::Unit::second);
    _addRow(PlanField::Pause, lng::Unit::second);
    _addRamp("PlanView.pickUpRamp", PlanField::PickUpFrom);
    _addRamp("PlanView.dropOffRamp", PlanField::DropOffFrom);
    _addRow(PlanField::PickUpTolerance, lng::Unit::percent);
    _addRow(PlanField::MinimumRatio, lng::Unit::none);
    _goesOn.set_label(get("PlanView.goesOn"));
    _goesOn.signal_toggled().connect(sigc::mem_fun(*this, &PlanView::_onEdited));
    _form.attach(_goesOn, 0, _row++, 3, 1);
    pack_start(_title, Gtk::PACK_SHRINK);
    pack_start(_form, Gtk::PACK_SHRINK);
}

void PlanView::_onEdited()
{
    if (!_isFilling)
        signalEdited.emit();
}

void PlanView::_addFaults()
{
    constexpr int columns = 4;
    auto& label = _addLabel(get("PlanView.faults"), 0, 3);
    Kes::GtkWidgetHelper::setTooltip(label, get("PlanView.faultsTip"));
    ++_row;
    auto& grid = *Gtk::manage(new Gtk::Grid());
    grid.get_style_context()->add_class("plan-faults");
    grid.set_column_homogeneous(true);
    grid.set_tooltip_text(get("PlanView.faultsTip"));
    for (const auto fault : allFaults) {
        const auto index = static_cast<std::size_t>(fault);
        auto& button = _faults[index];
        button.set_label(Faults::nameOf(fault));
        button.signal_toggled().connect(sigc::mem_fun(*this, &PlanView::_onEdited));
        grid.attach(button, static_cast<int>(index) % columns, static_cast<int>(index) / columns, 1, 1);
    }
    _form.attach(grid, 0, _row++, 3, 1);
}

void PlanView::_addChoices()
{
    auto& grid = *Gtk::manage(new Gtk::Grid());
    grid.get_style_context()->add_class("plan-choices");
    const auto add = [&](const std::string& key, Gtk::ComboBoxText& choice,
                         const std::vector<std::string>& texts, int column) {
        auto& label = makeLabel(get(key));
        for (const auto& text : texts)
            choice.append(text);
        Kes::GtkWidgetHelper::setTooltip(label, get(key + "Tip"));
        choice.set_tooltip_text(get(key + "Tip"));
        Kes::GtkWidgetHelper::setAccessibleName(choice, get(key));
        choice.signal_changed().connect(sigc::mem_fun(*this, &PlanView::_onEdited));
        grid.attach(label, column, 0, 1, 1);
        grid.attach(choice, column, 1, 1, 1);
    };
    add("PlanView.direction", _direction, {get("Direction.forward"), get("Direction.reverse")}, 0);
    add("PlanView.outputs", _outputs, {"1", "2", "3"}, 1);
    _form.attach(grid, 0, _row++, 3, 1);
}

Gtk::Label& PlanView::_addLabel(const std::string& text, int column, int width)
{
    auto& label = makeLabel(text);
    _form.attach(label, column, _row, width, 1);
    return label;
}

Gtk::Entry& PlanView::_prepareEntry(PlanField field)
{
    auto& entry = _entry(field);
    entry.set_width_chars(field == PlanField::Multiples ? 24 : 5);
    entry.set_max_width_chars(field == PlanField::Multiples ? -1 : 5);
    entry.set_hexpand(field == PlanField::Multiples);
    Kes::GtkWidgetHelper::setAccessibleName(entry, PlanTexts::nameOf(field));
    entry.signal_changed().connect(sigc::mem_fun(*this, &PlanView::_onEdited));
    return entry;
}

void PlanView::_addRow(PlanField field, const lng::Text& unit)
{
    auto& label = _addLabel(PlanTexts::nameOf(field), 0);
    label.set_hexpand(true);
    _form.attach(_prepareEntry(field), 1, _row, 1, 1);
    _addLabel(unit.get(), 2);
    ++_row;
}

/// A caption and two lines: from, to; step, dwell.
void PlanView::_addRamp(const char* nameKey, PlanField first)
{
    _addLabel(get(nameKey), 0, 3).get_style_context()->add_class("ramp-title");
    ++_row;
    auto& ramp = *Gtk::manage(new Gtk::Grid());
    ramp.get_style_context()->add_class("ramp");
    const auto part = [&](std::size_t index, const char* partKey, const lng::Text& unit) {
        const int column = index % 2 == 0 ? 0 : 3;
        const int row = static_cast<int>(index / 2);
        auto& entry = _prepareEntry(next(first, index));
        auto& label = makeLabel(get(partKey));
        if (column > 0)
            label.get_style_context()->add_class("ramp-second");
        ramp.attach(label, column, row, 1, 1);
        ramp.attach(entry, column + 1, row, 1, 1);
        ramp.attach(makeLabel(unit.get()), column + 2, row, 1, 1);
    };
    part(0, "PlanView.from", lng::Unit::timesSetting);
    part(1, "PlanView.to", lng::Unit::timesSetting);
    part(2, "PlanView.step", lng::Unit::timesSetting);
    part(3, "PlanView.dwell", lng::Unit::second);
    _form.attach(ramp, 0, _row++, 3, 1);
}

void PlanView::setTexts(const PlanTexts& texts)
{
    _isFilling = true;
    for (std::size_t i = 0; i < _entries.size(); ++i)
        if (const auto& text = texts[static_cast<PlanField>(i)]; _entries[i].get_text().raw() != text)
            _entries[i].set_text(text);
    const auto& [faults, direction, outputs, goesOn] = texts.choices;
    for (const auto fault : allFaults)
        _faults[static_cast<std::size_t>(fault)].set_active(std::find(faults.begin(), faults.end(), fault) !=
                                                            faults.end());
    _direction.set_active(static_cast<int>(direction));
    _outputs.set_active(static_cast<int>(outputs) - 1);
    _goesOn.set_active(goesOn);
    _isFilling = false;
}

PlanTexts PlanView::getTexts() const
{
    PlanTexts texts;
    for (const auto fault : allFaults)
        if (_faults[static_cast<std::size_t>(fault)].get_active())
            texts.choices.faults.push_back(fault);
    texts.choices.direction = static_cast<FaultDirection>(std::max(_direction.get_active_row_number(), 0));
    texts.choices.outputsPerPhase = static_cast<unsigned>(std::max(_outputs.get_active_row_number(), 0) + 1);
    texts.choices.goesOn = _goesOn.get_active();
    for (std::size_t i = 0; i < _entries.size(); ++i)
        texts[static_cast<PlanField>(i)] = _entries[i].get_text().raw();
    return texts;
}

void PlanView::setError(const std::optional<PlanTextError>& error)
{
    for (std::size_t i = 0; i < _entries.size(); ++i) {
        const bool isWrong = error && error->field == static_cast<PlanField>(i);
        const auto style = _entries[i].get_style_context();
        if (isWrong)
            style->add_class("error");
        else
            style->remove_class("error");
        _entries[i].get_accessible()->set_description(isWrong ? error->text : std::string());
    }
    _error.set_text(error ? error->text : std::string());
    _error.set_visible(error.has_value());
}

void PlanView::setEditable(bool editable)
{
    for (auto& entry : _entries)
        entry.set_editable(editable);
    _form.set_sensitive(editable);
}

} // namespace Overcurrent
