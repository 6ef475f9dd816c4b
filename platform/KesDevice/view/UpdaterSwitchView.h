#pragma once

#include <KesDevice/view/IUpdaterSwitchView.h>

#include <gtkmm/checkbutton.h>

namespace KesDevice {

/// A check box, small enough for the status bar. GUI thread.
class KES_EXPORT UpdaterSwitchView : public Gtk::CheckButton, public IUpdaterSwitchView {
public:
    UpdaterSwitchView();

    void setIsOn(bool on) override;

protected:
    void on_toggled() override;

private:
    bool _isSetting = false;
};

} // namespace KesDevice
