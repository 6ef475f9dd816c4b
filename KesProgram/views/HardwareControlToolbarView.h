#pragma once

#include <KesCommonView/EarlyKeys.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesProgram/views/IHardwareControlToolbarView.h>
#include <KesProgram/views/ToolButton.h>
#include <KesProgram/views/WindowKeys.h>

#include <gtkmm/toolbar.h>

#include <atomic>

namespace KesProgram {

/// The toolbar of a test: Start, Stop, Power off. At first Start can be pressed, Stop cannot, and Power off
/// is shown. In its window, F5 is Start and Escape is Stop. While a test can be stopped, Escape stops it from
/// a modal window of the process, too, before it means anything there, and Shift+F5 from every window.
///
/// Start and Stop do not keep the keyboard when they have done their work: Stop takes it from a Start that
/// has succeeded, the window's place for it from one that has failed and from a Stop that is over.
///
/// GUI thread, except `setCanStart`, `setCanStop` and `setCanPowerOff`: any thread while the view lives. Of
/// several such calls from several threads the one made last stands, whatever the order in which they reach
/// the GUI thread. Calls that are still queued when the view dies do nothing.
class KES_EXPORT HardwareControlToolbarView : public Gtk::Toolbar, public IHardwareControlToolbarView {
public:
    HardwareControlToolbarView();

    void setCanStart(bool can) override;
    void setCanStop(bool can) override;
    void setCanPowerOff(bool can) override;
    /// The button comes behind Power off; the view stays its owner's.
    void addToolButton(Kes::IView& view) override;

private:
    void _emitStart();
    void _leaveStart();
    void _allowStart(bool can);
    void _allowStop(bool can);
    bool _onEarlyKey(GtkWindow* window, const GdkEventKey& event);
    void _showPowerOff(bool show);

    ToolButton _start;
    ToolButton _stop;
    ToolButton _powerOff;
    WindowKeys _keys{*this};
    /// Whether Start had the keyboard when it was switched off.
    bool _hasLostKeyboard = false;
    std::atomic<bool> _canStart = true;
    std::atomic<bool> _canStop = false;
    std::atomic<bool> _canPowerOff = true;
    Kes::UpdateViewGuard _guard;
    Kes::EarlyKeys _earlyKeys;
};

} // namespace KesProgram
