#include <KesProgram/views/HardwareControlToolbarView.h>

#include <KesProgram/text/Program.h>
#include <KesProgram/views/detail/ToolbarItems.h>

#include <gtkmm/window.h>

#include <utility>

namespace KesProgram {

namespace {

gboolean canTakeKey(GtkWidget* widget, guint, gpointer)
{
    return gtk_widget_is_sensitive(widget);
}

/// By default a button takes its key only where it can be seen: not in the overflow menu of a narrow window.
void takeKeyUnseen(Gtk::ToolButton& button)
{
    g_signal_connect_after(button.gobj(), "can-activate-accel", G_CALLBACK(&canTakeKey), nullptr);
}

} // namespace

HardwareControlToolbarView::HardwareControlToolbarView()
    : _start("ToolStartImage", lng::Program::get("Tool.start")),
      _stop("ToolStopImage", lng::Program::get("Tool.stop")),
      _powerOff("ToolPlugImage", lng::Program::get("Tool.closeConnect")),
      _earlyKeys([this](GtkWindow* window, const GdkEventKey& event) { return _onEarlyKey(window, event); })
{
    set_toolbar_style(Gtk::TOOLBAR_ICONS);
    _start.signal_clicked().connect(sigc::mem_fun(*this, &HardwareControlToolbarView::_emitStart));
    _stop.signal_clicked().connect([this] { signalStop.emit(); });
    _powerOff.signal_clicked().connect([this] { signalPowerOff.emit(); });
    _stop.set_sensitive(false);
    _keys.add(_start, "clicked", Keys::start);
    _keys.add(_stop, "clicked", Keys::stop);
    _keys.add(_stop, "clicked", Keys::stopAnywhere);
    _start.tellKey(Keys::start);
    _stop.tellKey(Keys::stop);
    for (auto* button : {&_start, &_stop})
        takeKeyUnseen(*button);

    for (auto* button : {&_start, &_stop, &_powerOff})
        append(*button);
}

// Each update applies the value of its moment: one that was queued early may run after a later call
// that acted at once.

void HardwareControlToolbarView::setCanStart(bool can)
{
    _canStart = can;
    _guard.safeUpdateView([this] { _allowStart(_canStart); });
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

void HardwareControlToolbarView::_emitStart()
{
    // The view may be gone after the emission, and the slot with it.
    const sigc::slot<void()> leave = sigc::mem_fun(*this, &HardwareControlToolbarView::_leaveStart);
    signalStart.emit();
    leave();
}

/// After a start that has failed the next key must neither start again nor change what is typed somewhere.
void HardwareControlToolbarView::_leaveStart()
{
    auto* window = dynamic_cast<Gtk::Window*>(get_toplevel());
    if (_canStart && window)
        window->unset_focus();
}

void HardwareControlToolbarView::_allowStart(bool can)
{
    _hasLostKeyboard = !can && (_hasLostKeyboard || _start.get_child()->is_focus());
    _start.set_sensitive(can);
}

void HardwareControlToolbarView::_allowStop(bool can)
{
    _stop.set_sensitive(can);
    // Not the other way round: a late Stop must not be a Start.
    const auto* window = dynamic_cast<Gtk::Window*>(get_toplevel());
    if (can && window && (std::exchange(_hasLostKeyboard, false) || !window->get_focus()))
        _stop.child_focus(Gtk::DIR_TAB_FORWARD);
}

bool HardwareControlToolbarView::_onEarlyKey(GtkWindow* window, const GdkEventKey& event)
{
    auto* own = get_toplevel();
    if (!_canStop || GTK_WIDGET(own->gobj()) == GTK_WIDGET(window))
        return false;
    if (!Keys::stopAnywhere.matches(event) && !(Keys::stop.matches(event) && gtk_window_get_modal(window)))
        return false;
    signalStop.emit();
    return true;
}

void HardwareControlToolbarView::_showPowerOff(bool show)
{
    _powerOff.set_no_show_all(!show);
    _powerOff.set_visible(show);
    if (show)
        _powerOff.show_all();
}

} // namespace KesProgram
