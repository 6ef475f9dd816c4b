#pragma once

#include <KesProgram/views/IProgramStatusBarView.h>

#include <glibmm/binding.h>
#include <gtkmm/grid.h>

namespace KesProgram {

/// The status bar: the information line across the top, below it the archive file and the hardware. It is the
/// one status bar of the window to assistive technology, named by the information. GUI thread.
///
/// Each area is set once: a second view would lie over the first. The views stay their owners'.
class KES_EXPORT ProgramStatusBarView : public Gtk::Grid, public IProgramStatusBarView {
public:
    ProgramStatusBarView();

    /// From now on the accessible name of the bar follows that of the view, so that a change is announced for
    /// the bar.
    void setInfoArea(Kes::IView* view) override;
    void setArchiveArea(Kes::IView* view) override;
    void setHardwareArea(Kes::IView* view) override;

private:
    void _place(Kes::IView* view, int column, int row, int width);

    Glib::RefPtr<Glib::Binding> _name;
};

} // namespace KesProgram
