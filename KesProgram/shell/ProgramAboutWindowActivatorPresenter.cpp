#include <KesProgram/shell/ProgramAboutWindowActivatorPresenter.h>

#include <KesProgram/model/ProgramModel.h>

namespace KesProgram {

ProgramAboutWindowActivatorPresenter::ProgramAboutWindowActivatorPresenter(Kes::IPresenter* parent,
                                                                           ProgramModel& model)
    : _parent(parent), _model(model)
{}

void ProgramAboutWindowActivatorPresenter::show()
{
    const std::string version = _model.getPackageVersion();
    const std::string name = _model.getProgramName();
    _activator.show(_parent->getView(), name, version);
}

} // namespace KesProgram
