#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/window.h>

namespace Kes {

/// The base of all top-level windows of the family, with the family's icon, which comes after the first
/// frame. GUI thread.
class KES_EXPORT Window : public Gtk::Window {
public:
    Window();
    ~Window() override;

    /// Calls the slot once, from the main loop, when the window has been drawn for the first time, or after
    /// a second when it is not drawn at all (a minimised one, for instance); never after the window's end.
    /// What can wait until then lets the window appear sooner. Slots are called in the order in which they
    /// were given; one that comes later waits in the same way for the next drawing.
    void afterFirstFrame(const sigc::slot<void()>& slot);

private:
    bool _onFirstDraw(const Cairo::RefPtr<Cairo::Context>& context);
    bool _onFirstFrame();

    sigc::signal<void()> _firstFrame;
    sigc::connection _drawn;
    sigc::connection _waiting;
};

} // namespace Kes
