#include <Overcurrent/presenter/PlanPresenter.h>

#include <Overcurrent/view/PlanView.h>

namespace Overcurrent {

PlanPresenter::PlanPresenter(OvercurrentModel& model) : _model(model), _view(std::make_unique<PlanView>())
{
    _view->signalEdited.connect(sigc::mem_fun(*this, &PlanPresenter::_onEdited));
    model.signalSettingsChanged.connect(sigc::mem_fun(*this, &PlanPresenter::_onPlanChanged));
    _canStartConnection = model.signalCanStartChanged.connect(
        [this] { _guard.safeUpdateView([this] { _onHardwareRunning(); }); });
    _onPlanChanged();
    _onHardwareRunning();
}

PlanPresenter::~PlanPresenter() = default;

Kes::IView* PlanPresenter::getView()
{
    return _view.get();
}

Kes::IView& PlanPresenter::getErrorView()
{
    return _view->getErrorView();
}

void PlanPresenter::_onEdited()
{
    _isEditing = true;
    TestPlan plan = _model.getPlan();
    const auto error = _view->getTexts().read(plan);
    (void)_model.setPlan(plan);
    _model.setPlanError(error ? error->text : std::string());
    _view->setError(error);
    _isEditing = false;
}

void PlanPresenter::_onPlanChanged()
{
    // The user's own way of writing stays while the user writes.
    if (_isEditing)
        return;
    TestPlan shown;
    if (!_view->getTexts().read(shown) && shown == _model.getPlan())
        return;
    // A change of the test object does not throw away what is being written.
    if (!_model.getPlanError().empty())
        return;
    _view->setTexts(PlanTexts(_model.getPlan()));
    _view->setError(std::nullopt);
}

void PlanPresenter::_onHardwareRunning()
{
    _view->setEditable(_model.getCanStart());
}

} // namespace Overcurrent
