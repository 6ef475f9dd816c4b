#include <KesProgram/shell/ProgramMainMenuPresenter.h>

#include <KesProgram/views/ProgramMainMenuView.h>

namespace KesProgram {

ProgramMainMenuPresenter::ProgramMainMenuPresenter() : _view(std::make_unique<ProgramMainMenuView>()) {}

ProgramMainMenuPresenter::~ProgramMainMenuPresenter() = default;

Kes::IView* ProgramMainMenuPresenter::getView()
{
    return _view.get();
}

void ProgramMainMenuPresenter::addMenu(Kes::IView* view)
{
    _view->addMenu(view);
}

void ProgramMainMenuPresenter::addToolbar(Kes::IView* view)
{
    _view->addToolbar(view);
}

} // namespace KesProgram
