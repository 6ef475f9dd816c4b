#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/checkbutton.h>
#include <sigc++/sigc++.h>

namespace KesDevice {

/// A check box, small enough for the status bar. GUI thread.
class KES_EXPORT UpdaterSwitchView : public Gtk::CheckButton, public Kes::IView {
public:
    UpdaterSwitchView();

    /// The user has switched; the argument is the new state.
    sigc::signal<void(bool)> signalSwitched;

    /// Without a signal.
    void setIsOn(bool on);

protected:
    void on_toggled() override;

private:
    bool _isSetting = false;
};

} // namespace KesDevice
