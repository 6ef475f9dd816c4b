#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesDevice/HardwareManager.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesDevice {

/// The window in which the user chooses the devices and their synchronisation. It works on a copy; nothing
/// changes before the user confirms. GUI thread.
class KES_EXPORT HardwareManagerPresenter : public sigc::trackable {
public:
    HardwareManagerPresenter();
    ~HardwareManagerPresenter();

    /// The user has confirmed. The slot takes the new configuration out of the pointer.
    sigc::signal<void(std::unique_ptr<HardwareManager>&)> signalHardwareChanging;

    /// Shows the window for a configuration over the parent's window, or brings the open one to the front.
    /// `local`: the configuration is the program's own; the window says so.
    void edit(Kes::IView* parent, HardwareManager* hardware, bool local);

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDevice
