#pragma once

#include <KesProgram/views/IToolsToolbarView.h>
#include <KesProgram/views/ToolButton.h>

#include <gtkmm/toolbar.h>

namespace KesProgram {

/// The toolbar of the test object and the report. The test object button is not in it at first; the view
/// owns the buttons whether they are in the toolbar or not. GUI thread.
class KES_EXPORT ToolsToolbarView : public Gtk::Toolbar, public IToolsToolbarView {
public:
    ToolsToolbarView();

    void showTestObjectCommand(bool show) override;
    void showReportCommand(bool show) override;

private:
    void _show(ToolButton& button, bool show, int place);

    ToolButton _testObject;
    ToolButton _report;
};

} // namespace KesProgram
