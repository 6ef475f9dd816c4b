#pragma once

#include <KesProgram/views/IToolsToolbarView.h>
#include <KesProgram/views/ToolButton.h>

#include <gtkmm/toolbar.h>

namespace KesProgram {

/// The toolbar of the test object and the report. A button that is not shown is taken out of the toolbar, so
/// that no `show_all` brings it back; the view owns the buttons whether they are in the toolbar or not. GUI
/// thread.
class KES_EXPORT ToolsToolbarView : public Gtk::Toolbar, public IToolsToolbarView {
public:
    ToolsToolbarView();

    /// Not shown at first. Whatever the order of the calls, it stands before the report.
    void showTestObjectCommand(bool show) override;
    /// Shown at first.
    void showReportCommand(bool show) override;

private:
    /// `place`: in the toolbar, from 0; -1 for its end.
    void _show(ToolButton& button, bool show, int place);

    ToolButton _testObject;
    ToolButton _report;
};

} // namespace KesProgram
