#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesDevice/HardwareManager.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesDevice {

/// The window in which the user chooses the devices and their synchronisation. It works on a copy; nothing
/// changes before the user confirms. GUI thread; devices are searched and asked on threads of its own, for
/// which the destructor waits.
class KES_EXPORT HardwareManagerPresenter : public sigc::trackable {
public:
    HardwareManagerPresenter();
    ~HardwareManagerPresenter();

    /// The user has confirmed and the window is closed. The slot takes the new configuration out of the
    /// pointer. While the configuration in use is busy, confirming is refused in the window.
    sigc::signal<void(std::unique_ptr<HardwareManager>&)> signalHardwareChanging;

    /// Shows the window for a configuration over the parent's window, or brings the open one to the front.
    /// `local`: the configuration is the program's own; the window says so, and the configuration lives while
    /// the window is open, or is replaced by a slot of `signalHardwareChanging`. A null one is ignored.
    void edit(Kes::IView* parent, HardwareManager* hardware, bool local);

    /// Closes the window; the user's changes are dropped.
    void close();

    /// The window while it is open, else null.
    Kes::IView* getView();

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDevice
