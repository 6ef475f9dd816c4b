#include <KesProgram/shell/ProgramHelpPresenter.h>

#include <KesProgram/model/ProgramModel.h>

namespace KesProgram {

ProgramHelpPresenter::ProgramHelpPresenter(Kes::IPresenter* parent, ProgramModel& model)
    : _parent(parent), _model(model)
{}

void ProgramHelpPresenter::show()
{
    const std::string fileName = _model.getHelpFileName();
    _view.show(_parent->getView(), fileName);
}

} // namespace KesProgram
