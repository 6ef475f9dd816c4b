#pragma once

#include <Overcurrent/view/IPlanView.h>

#include <gtkmm/box.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/entry.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>

#include <array>
#include <string>
#include <vector>

namespace Overcurrent {

/// The plan as a form: an entry for each value, and buttons for the choices. GUI thread.
class PlanView : public Gtk::Box, public IPlanView {
public:
    PlanView();

    void setTexts(const PlanTexts& texts) override;
    PlanTexts getTexts() const override;
    void setError(const std::optional<PlanTextError>& error) override;
    Kes::IView& getErrorView() override { return _error; }
    void setEditable(bool editable) override;

private:
    class ErrorView : public Gtk::Label, public Kes::IView {};

    void _addRow(PlanField field, const lng::Text& unit);
    void _addRamp(const char* nameKey, PlanField first);
    void _addFaults();
    void _addChoices();
    void _onEdited();
    Gtk::Entry& _prepareEntry(PlanField field);
    Gtk::Label& _addLabel(const std::string& text, int column, int width = 1);
    Gtk::Entry& _entry(PlanField field) { return _entries[static_cast<std::size_t>(field)]; }

    Gtk::Label _title;
    Gtk::Grid _form;
    int _row = 0;
    std::array<Gtk::Entry, static_cast<std::size_t>(PlanField::Count)> _entries;
    std::array<Gtk::CheckButton, allFaults.size()> _faults;
    Gtk::ComboBoxText _direction;
    Gtk::ComboBoxText _outputs;
    Gtk::CheckButton _goesOn;
    ErrorView _error;
    bool _isFilling = false;
};

} // namespace Overcurrent
