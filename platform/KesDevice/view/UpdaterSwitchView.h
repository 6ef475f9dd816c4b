#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/checkbutton.h>
#include <sigc++/sigc++.h>

namespace KesDevice {

/// A check box, small enough for the status bar. Its tooltip says what is switched; the description for
/// assistive technology leaves out the title, which is the name already. GUI thread.
class KES_EXPORT UpdaterSwitchView : public Gtk::CheckButton, public Kes::IView {
public:
    UpdaterSwitchView();

    /// The user has switched; the argument is the new state, which the box shows already.
    sigc::signal<void(bool)> signalSwitched;

    /// Without a signal. The switch does not follow the updater by itself.
    void setIsOn(bool on);

protected:
    /// Called by the toolkit, by `setIsOn` as well.
    void on_toggled() override;

private:
    /// While `setIsOn` changes the box, it reports nothing.
    bool _isSetting = false;
};

} // namespace KesDevice
