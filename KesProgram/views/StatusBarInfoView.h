#pragma once

#include <KesCommonView/UpdateViewGuard.h>
#include <KesProgram/views/IStatusBarInfoView.h>

#include <gtkmm/frame.h>
#include <gtkmm/label.h>

#include <atomic>

namespace KesProgram {

/// The information line. It takes the keyboard, and nothing can be done to it: a harmless place. A text
/// longer than the line is cut at its end; the tooltip has it whole.
///
/// GUI thread, except `setInfo`: any thread while the view lives. Of several calls from several threads
/// the text given last stays, whatever the order in which they reach the GUI thread; calls that are still
/// queued when the view dies do nothing.
class KES_EXPORT StatusBarInfoView : public Gtk::Frame, public IStatusBarInfoView {
public:
    StatusBarInfoView();

    void setInfo(const std::string& text) override;

private:
    void _show(const std::string& text);

    Gtk::Label _label;
    std::atomic<unsigned> _lastCall = 0;
    Kes::UpdateViewGuard _guard;
};

} // namespace KesProgram
