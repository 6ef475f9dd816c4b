#include <KesProgram/views/ToolsToolbarView.h>

#include <KesProgram/text/Program.h>

namespace KesProgram {

ToolsToolbarView::ToolsToolbarView()
    : _testObject("ToolTestObjectImage", lng::Program::get("Tool.testObject")),
      _report("ToolReportImage", lng::Program::get("Tool.report"))
{
    set_toolbar_style(Gtk::TOOLBAR_ICONS);
    _testObject.signal_clicked().connect([this] { signalTestObject.emit(); });
    _report.signal_clicked().connect([this] { signalReport.emit(); });
    append(_report);
}

void ToolsToolbarView::showTestObjectCommand(bool show)
{
    const bool shown = _testObject.get_parent() != nullptr;
    if (!show) {
        if (shown)
            remove(_testObject);
        return;
    }
    if (!shown)
        insert(_testObject, 0);
    show_all();
}

} // namespace KesProgram
