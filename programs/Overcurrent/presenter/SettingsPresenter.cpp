#include <Overcurrent/presenter/SettingsPresenter.h>

#include <Overcurrent/view/SettingsView.h>

namespace Overcurrent {

SettingsPresenter::SettingsPresenter(OvercurrentModel& model)
    : _model(model), _view(std::make_unique<SettingsView>())
{
    _view->signalEdit.connect(signalEdit.make_slot());
    model.signalPlanChanged.connect(sigc::mem_fun(*this, &SettingsPresenter::_update));
    _update();
}

SettingsPresenter::~SettingsPresenter() = default;

Kes::IView* SettingsPresenter::getView()
{
    return _view.get();
}

void SettingsPresenter::_update()
{
    _view->setLines(SettingsSummary::describe(_model.getSettings()));
}

} // namespace Overcurrent
