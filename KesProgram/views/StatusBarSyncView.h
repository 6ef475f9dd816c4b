#pragma once

#include <KesProgram/views/IStatusBarSyncView.h>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// The synchronisation mode behind a caption, as a button that asks for more about it. Beside many device
/// rows it keeps its own height. Bytes that are not UTF-8 are shown as replacement characters. GUI thread.
class KES_EXPORT StatusBarSyncView : public Gtk::Button, public IStatusBarSyncView {
public:
    StatusBarSyncView();

    /// The accessible name of the button is caption and mode together; with an empty name it is the caption
    /// alone.
    void setName(const std::string& name) override;
    /// Also read out as the description of the button, because the label that shows the tooltip is no
    /// control.
    void setTooltip(const std::string& text) override;
    /// While it is off the button does not take the keyboard.
    void setEnabledInfo(bool enabled) override;

private:
    void _updateAccessibleName();

    Gtk::Box _box;
    Gtk::Label _title;
    Gtk::Label _name;
};

} // namespace KesProgram
