#pragma once

#include <KesCommonView/UpdateViewGuard.h>
#include <KesProgram/views/IHardwareControlToolbarView.h>
#include <KesProgram/views/ToolButton.h>
#include <KesProgram/views/WindowKeys.h>

#include <gtkmm/toolbar.h>

#include <atomic>

namespace KesProgram {

/// The toolbar of a test: Start, Stop, Power off. In its window, F5 is Start and Escape
/// is Stop.
///
/// GUI thread, except `setCanStart`, `setCanStop` and `setCanPowerOff`: any thread while the view lives.
/// Of several such calls from several threads the one made last stands, whatever the order in which they
/// reach the GUI thread. Calls that are still queued when the view dies do nothing.
class KES_EXPORT HardwareControlToolbarView : public Gtk::Toolbar, public IHardwareControlToolbarView {
public:
    HardwareControlToolbarView();

    void setCanStart(bool can) override;
    void setCanStop(bool can) override;
    void setCanPowerOff(bool can) override;
    void addToolButton(Kes::IView& view) override;

private:
    void _allowStop(bool can);
    void _showPowerOff(bool show);

    ToolButton _start;
    ToolButton _stop;
    ToolButton _powerOff;
    WindowKeys _keys{*this};
    std::atomic<bool> _canStart = true;
    std::atomic<bool> _canStop = false;
    std::atomic<bool> _canPowerOff = true;
    Kes::UpdateViewGuard _guard;
};

} // namespace KesProgram
