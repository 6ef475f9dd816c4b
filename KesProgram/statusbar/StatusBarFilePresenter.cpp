#include <KesProgram/statusbar/StatusBarFilePresenter.h>

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/views/StatusBarFileView.h>

namespace KesProgram {

StatusBarFilePresenter::StatusBarFilePresenter(ProgramModel& model)
    : _model(model), _view(std::make_unique<StatusBarFileView>())
{
    if (!_model.hasArchiveLogic())
        return;
    _model.getArchiveManager()->signalFileNameChanged.connect(
        sigc::mem_fun(*this, &StatusBarFilePresenter::_updateFileName));
    _updateFileName();
}

StatusBarFilePresenter::~StatusBarFilePresenter() = default;

Kes::IView* StatusBarFilePresenter::getView()
{
    return _view.get();
}

std::string StatusBarFilePresenter::_getDisplayFileName()
{
    const std::string& name = _model.getArchiveManager()->getFileName();
    return name.empty() ? "[New]." + _model.getExtension() : name;
}

void StatusBarFilePresenter::_updateFileName()
{
    _view->setFileName(_getDisplayFileName());
}

} // namespace KesProgram
