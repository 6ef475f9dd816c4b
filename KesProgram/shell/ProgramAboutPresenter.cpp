#include <KesProgram/shell/ProgramAboutPresenter.h>

#include <KesCommonView/AboutView.h>
#include <KesProgram/model/ProgramModel.h>

namespace KesProgram {

ProgramAboutPresenter::ProgramAboutPresenter(ProgramModel& model) : _view(std::make_unique<Kes::AboutView>())
{
    _view->setProgramName(model.getProgramName());
}

ProgramAboutPresenter::~ProgramAboutPresenter() = default;

Kes::IView* ProgramAboutPresenter::getView()
{
    return _view.get();
}

} // namespace KesProgram
