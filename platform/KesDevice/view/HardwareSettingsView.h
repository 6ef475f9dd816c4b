#pragma once

#include <KesCommonView/IView.h>
#include <KesCommonView/RoomyBox.h>
#include <KesCommonView/WindowView.h>
#include <KesDevice/view/DeviceWidgets.h>

#include <gtkmm/scrolledwindow.h>
#include <sigc++/sigc++.h>

#include <string>

namespace KesDevice {

/// The settings window: the parts scroll, the buttons below them stay. The view is the content of a window
/// that it owns. GUI thread.
class KES_EXPORT HardwareSettingsView : public Gtk::Box, public Kes::IView {
public:
    /// Loads the style sheet of the device windows.
    HardwareSettingsView();
    ~HardwareSettingsView() override;

    /// OK, or Enter where it means nothing else. The window stays open: a slot closes it when all is well.
    sigc::signal<void()> signalConfirmed;
    /// Cancel, Escape, or the window's own closing button; the window is closed.
    sigc::signal<void()> signalCancelled;

    /// Shows the window over the parent's window, or brings it to the front. A modal one keeps the other
    /// windows of the program from the user.
    void open(Kes::IView* parent, bool modal);
    /// Without a signal. The view is not opened again afterwards.
    void close();
    /// The parts are placed from above, once, and not owned; they may die before the view. Throws
    /// std::bad_cast for a view that is not a widget.
    void setParts(Kes::IView& devices, Kes::IView& search, Kes::IView& sync);
    /// Something to know about the whole configuration; empty: nothing.
    void setNotice(const std::string& notice);
    /// Why the configuration cannot be confirmed, beside the buttons, where it is seen wherever the parts are
    /// scrolled to; empty: nothing.
    void setProblem(const std::string& problem);

private:
    void _buildNotice();
    void _buildParts();
    void _buildButtons();
    void _onWindowClosed();

    Gtk::Box _noticeLine;
    Gtk::Label _notice;
    Gtk::ScrolledWindow _scrolled;
    Kes::RoomyBox _parts;
    Gtk::Box _buttons;
    ProblemLine _problem;
    Gtk::Button _cancel;
    Gtk::Button _ok;
    bool _isClosing = false;
    Kes::WindowView _window;
};

} // namespace KesDevice
