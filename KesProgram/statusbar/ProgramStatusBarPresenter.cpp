#include <KesProgram/statusbar/ProgramStatusBarPresenter.h>

#include <KesProgram/views/ProgramStatusBarView.h>

namespace KesProgram {

ProgramStatusBarPresenter::ProgramStatusBarPresenter(ProgramModel& model)
    : _file(model), _info(model), _hardware(model), _view(std::make_unique<ProgramStatusBarView>())
{
    _view->setArchiveArea(_file.getView());
    _view->setInfoArea(_info.getView());
    _view->setHardwareArea(_hardware.getView());
}

ProgramStatusBarPresenter::~ProgramStatusBarPresenter() = default;

Kes::IView* ProgramStatusBarPresenter::getView()
{
    return _view.get();
}

} // namespace KesProgram
