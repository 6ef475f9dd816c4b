#pragma once

#include <KesCommonView/RoomyBox.h>
#include <KesCommonView/WindowView.h>
#include <KesDevice/view/DeviceWidgets.h>
#include <KesDevice/view/IHardwareSettingsView.h>

#include <gtkmm/scrolledwindow.h>

namespace KesDevice {

/// The settings window: the parts scroll, the buttons below them stay. It keeps the parent's window from
/// being used meanwhile. GUI thread.
class KES_EXPORT HardwareSettingsView : public Gtk::Box, public IHardwareSettingsView {
public:
    HardwareSettingsView();
    ~HardwareSettingsView() override;

    void open(Kes::IView* parent, bool modal) override;
    void close() override;
    void setParts(Kes::IView& devices, Kes::IView& search, Kes::IView& sync) override;
    void setNotice(const std::string& notice) override;
    void setProblem(const std::string& problem) override;

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
