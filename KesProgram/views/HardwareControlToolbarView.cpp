#include <KesProgram/views/HardwareControlToolbarView.h>

#include <KesProgram/text/Program.h>
#include <KesProgram/views/detail/ToolbarItems.h>

#include <gtkmm/window.h>

namespace KesProgram {

HardwareControlToolbarView::HardwareControlToolbarView()
    : _start("ToolStartImage", lng::Program::get("Tool.start")),
      _stop("ToolStopImage", lng::Program::get("Tool.stop")),
      _powerOff("ToolPlugImage", lng::Program::get("Tool.closeConnect"))
{
    set_toolbar_style(Gtk::TOOLBAR_ICONS);
    _start.signal_clicked().connect([this] { signalStart.emit(); });
    _stop.signal_clicked().connect([this] { signalStop.emit(); });
    _powerOff.signal_clicked().connect([this] { signalPowerOff.emit(); });
    _stop.set_sensitive(false);
    _keys.add(_start, "clicked", Keys::start);
    _keys.add(_stop, "clicked", Keys::stop);
    _start.tellKey(Keys::start);
    _stop.tellKey(Keys::stop);

    for (auto* button : {&_start, &_stop, &_powerOff})
        append(*button);
}

// Each update applies the value of its moment: one that was queued early may run after a later call
// that acted at once.

void HardwareControlToolbarView::setCanStart(bool can)
{
    _canStart = can;
    _guard.safeUpdateView([this] { _start.set_sensitive(_canStart); });
}

void HardwareControlToolbarView::setCanStop(bool can)
{
    _canStop = can;
    _guard.safeUpdateView([this] { _allowStop(_canStop); });
}

void HardwareControlToolbarView::setCanPowerOff(bool can)
{
    _canPowerOff = can;
    _guard.safeUpdateView([this] { _showPowerOff(_canPowerOff); });
}

void HardwareControlToolbarView::addToolButton(Kes::IView& view)
{
    appendToolView(*this, view);
}

void HardwareControlToolbarView::_allowStop(bool can)
{
    _stop.set_sensitive(can);
    // Start loses the keyboard when it is pressed. Not the other way round: a late Stop must not be a Start.
    const auto* window = dynamic_cast<Gtk::Window*>(get_toplevel());
    if (can && window && !window->get_focus())
        _stop.child_focus(Gtk::DIR_TAB_FORWARD);
}

void HardwareControlToolbarView::_showPowerOff(bool show)
{
    _powerOff.set_no_show_all(!show);
    _powerOff.set_visible(show);
    if (show)
        _powerOff.show_all();
}

} // namespace KesProgram
