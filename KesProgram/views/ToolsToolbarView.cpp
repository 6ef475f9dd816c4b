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
    _show(_testObject, show, 0);
}

void ToolsToolbarView::showReportCommand(bool show)
{
    _show(_report, show, -1);
}

void ToolsToolbarView::_show(ToolButton& button, bool show, int place)
{
    const bool isShown = button.get_parent() != nullptr;
    if (!show && isShown)
        remove(button);
    if (show && !isShown)
        insert(button, place);
    if (show)
        show_all();
}

} // namespace KesProgram
