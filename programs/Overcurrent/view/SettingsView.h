#pragma once

#include <Overcurrent/view/ISettingsView.h>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>

namespace Overcurrent {

/// The settings as lines of name and value, and a button to edit them. GUI thread.
class SettingsView : public Gtk::Box, public ISettingsView {
public:
    SettingsView();

    void setLines(const std::vector<SettingsSummary::Line>& lines) override;

private:
    Gtk::Label _title;
    Gtk::Grid _lines;
    Gtk::Button _edit;
};

} // namespace Overcurrent
