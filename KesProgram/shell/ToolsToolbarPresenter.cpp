#include <KesProgram/shell/ToolsToolbarPresenter.h>

#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/views/ToolsToolbarView.h>

namespace KesProgram {

ToolsToolbarPresenter::ToolsToolbarPresenter(ProgramBasePresenter* shell, bool showTestObject)
    : _view(std::make_unique<ToolsToolbarView>())
{
    _view->signalTestObject.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::requestTestObject));
    _view->signalReport.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::requestReport));
    if (showTestObject)
        _view->showTestObjectCommand(true);
    if (!shell->hasReport())
        _view->showReportCommand(false);
}

ToolsToolbarPresenter::~ToolsToolbarPresenter() = default;

Kes::IView* ToolsToolbarPresenter::getView()
{
    return _view.get();
}

} // namespace KesProgram
