#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <gtkmm/box.h>
#include <gtkmm/paned.h>
#include <gtkmm/scrolledwindow.h>

namespace KesMeasure {

/// The content of a test program's window: settings and plan at the left, outcome, chart and table at the
/// right, in the looks of the family. Where the window is too small for chart and table they scroll; the
/// outcome stays in sight. The views are placed, not owned, and have to be widgets
/// (`std::bad_cast` otherwise). GUI thread.
class KES_EXPORT TestContentView : public Gtk::Paned, public Kes::IView {
public:
    /// `planError` stays in sight below settings and plan while those scroll. The views may be destroyed
    /// before or after this one. Loads the style sheet of the results.
    TestContentView(Kes::IView& settings, Kes::IView& plan, Kes::IView& planError, Kes::IView& outcome,
                    Kes::IView& chart, Kes::IView& results);
    /// Of a program whose plan is part of its settings.
    TestContentView(Kes::IView& settings, Kes::IView& outcome, Kes::IView& chart, Kes::IView& results);

private:
    Gtk::Box _leftColumn;
    Gtk::Box _left;
    Gtk::ScrolledWindow _leftScroller;
    Gtk::Box _right;
    Gtk::ScrolledWindow _measuredScroller;
    Gtk::Paned _measured;
};

} // namespace KesMeasure
