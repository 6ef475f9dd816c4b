#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesMeasure/TextLine.h>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>

#include <vector>

namespace KesMeasure {

/// The settings of a test as lines of name and value, and a button to edit them. A line without a value is
/// the title of those after it. GUI thread.
///
/// Only shown here: the user edits them in the window of the test object, which a slot of `signalEdit` opens.
/// Long names and values are broken into lines.
class KES_EXPORT SettingsView : public Gtk::Box, public Kes::IView {
public:
    /// The user wants to edit the test object.
    sigc::signal<void()> signalEdit;

    SettingsView();

    /// Replaces all lines; their texts are in the language of the process. None are shown at first.
    void setLines(const std::vector<TextLine>& lines);

private:
    Gtk::Label _title;
    Gtk::Grid _lines;
    Gtk::Button _edit;
};

} // namespace KesMeasure
