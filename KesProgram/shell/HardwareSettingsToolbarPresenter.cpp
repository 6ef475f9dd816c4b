#include <KesProgram/shell/HardwareSettingsToolbarPresenter.h>

#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/views/HardwareSettingsToolbarView.h>

namespace KesProgram {

HardwareSettingsToolbarPresenter::HardwareSettingsToolbarPresenter(ProgramBasePresenter* shell)
    : _view(std::make_unique<HardwareSettingsToolbarView>())
{
    _view->signalSettings.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::requestHardware));
}

HardwareSettingsToolbarPresenter::~HardwareSettingsToolbarPresenter() = default;

Kes::IView* HardwareSettingsToolbarPresenter::getView()
{
    return _view.get();
}

void HardwareSettingsToolbarPresenter::addToolButton(Kes::IView& view)
{
    _view->addToolButton(view);
}

} // namespace KesProgram
