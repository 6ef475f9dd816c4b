#include <KesProgram/shell/HelpMenuPresenter.h>

#include <KesProgram/views/HelpMenuView.h>

namespace KesProgram {

HelpMenuPresenter::HelpMenuPresenter(Kes::IPresenter* parent, ProgramModel& model)
    : _about(parent, model), _help(parent, model), _view(std::make_unique<HelpMenuView>())
{
    _view->signalAbout.connect(sigc::mem_fun(_about, &ProgramAboutWindowActivatorPresenter::show));
    _view->signalHelp.connect(sigc::mem_fun(_help, &ProgramHelpPresenter::show));
}

HelpMenuPresenter::~HelpMenuPresenter() = default;

Kes::IView* HelpMenuPresenter::getView()
{
    return _view.get();
}

} // namespace KesProgram
