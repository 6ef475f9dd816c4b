#pragma once

#include <Overcurrent/data/PlanTexts.h>

#include <KesCommonView/IView.h>

#include <gtkmm/box.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/entry.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>

#include <sigc++/sigc++.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Overcurrent {

/// The plan as a form: an entry for each value, and buttons for the choices. It is narrow, to stand beside
/// the results: ramps take two lines each. What the texts mean is up to `PlanTexts`. GUI thread.
class PlanView : public Gtk::Box, public Kes::IView {
public:
    /// The user has changed a text; not emitted by `setTexts`.
    sigc::signal<void()> signalEdited;

    /// Empty before `setTexts`; the texts of the form are in the language of the process.
    PlanView();

    /// Leaves entries alone that have the text already, with the cursor in them.
    void setTexts(const PlanTexts& texts);
    /// As the user has typed them.
    PlanTexts getTexts() const;
    /// Why the texts are no plan; nothing: they are one. Marks the entry, and says the reason as its
    /// description for assistive technology as well as in the error view. Choices that make no plan have no
    /// mark, only the text.
    void setError(const std::optional<PlanTextError>& error);
    /// The text of the error, to be placed where it stays in sight while the form is scrolled: a label that
    /// is hidden while there is no error; owned by this view.
    Kes::IView& getErrorView() { return _error; }
    /// Of the whole form. Off, the texts can be read and not changed. On at first.
    void setEditable(bool editable);

private:
    class ErrorView : public Gtk::Label, public Kes::IView {};

    /// A line of the form: name, entry, unit.
    void _addRow(PlanField field, const lng::Text& unit);
    /// `first`: the first of the ramp's four fields, which follow each other.
    void _addRamp(const char* nameKey, PlanField first);
    void _addFaults();
    void _addChoices();
    void _onEdited();
    /// Names the entry for assistive technology, and reports what is typed into it.
    Gtk::Entry& _prepareEntry(PlanField field);
    Gtk::Label& _addLabel(const std::string& text, int column, int width = 1);
    Gtk::Entry& _entry(PlanField field) { return _entries[static_cast<std::size_t>(field)]; }

    Gtk::Label _title;
    Gtk::Grid _form;
    /// The line of the form that is built next.
    int _row = 0;
    std::array<Gtk::Entry, static_cast<std::size_t>(PlanField::Count)> _entries;
    /// In the order of `Fault`.
    std::array<Gtk::CheckButton, allFaults.size()> _faults;
    Gtk::ComboBoxText _direction;
    /// From 1 on.
    Gtk::ComboBoxText _outputs;
    Gtk::CheckButton _goesOn;
    ErrorView _error;
    /// While `setTexts` fills the form, nothing is reported.
    bool _isFilling = false;
};

} // namespace Overcurrent
