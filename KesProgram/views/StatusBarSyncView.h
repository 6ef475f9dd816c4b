#pragma once

#include <KesProgram/views/IStatusBarSyncView.h>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// The synchronisation mode behind a caption, as a button that asks for more about it. GUI thread.
class KES_EXPORT StatusBarSyncView : public Gtk::Button, public IStatusBarSyncView {
public:
    StatusBarSyncView();

    void setName(const std::string& name) override;
    void setTooltip(const std::string& text) override;
    void setEnabledInfo(bool enabled) override;

private:
    void _updateAccessibleName();

    Gtk::Box _box;
    Gtk::Label _title;
    Gtk::Label _name;
};

} // namespace KesProgram
