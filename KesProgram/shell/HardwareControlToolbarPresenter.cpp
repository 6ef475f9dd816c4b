#include <KesProgram/shell/HardwareControlToolbarPresenter.h>

#include <KesCommon/SignalGate.h>
#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/views/HardwareControlToolbarView.h>

namespace KesProgram {

HardwareControlToolbarPresenter::HardwareControlToolbarPresenter(ProgramModel& model)
    : _model(model),
      _view(std::make_unique<HardwareControlToolbarView>()),
      _isUpdating([this](bool updating) { _onUpdatingChanged(updating); })
{
    // The flags are read when the GUI thread gets to it: what a queued update carried could be outdated.
    _canStartConnection = _model.signalCanStartChanged.connect(
        [this] { _guard.safeUpdateView([this] { _updateCanStart(); }); });
    _canStopConnection =
        _model.signalCanStopChanged.connect([this] { _guard.safeUpdateView([this] { _updateCanStop(); }); });
    _updateCanStart();
    _updateCanStop();

    _view->signalStart.connect(sigc::hide_return(sigc::mem_fun(_model, &ProgramModel::startTest)));
    _view->signalStop.connect(sigc::mem_fun(_model, &ProgramModel::stopTest));
    _view->signalPowerOff.connect(sigc::mem_fun(_model, &ProgramModel::beginDisconnect));

    // No change is announced between the two.
    const Kes::SignalGate::Guard gate;
    _view->setCanPowerOff(_getCanPowerOff());
    _updatingConnection = KesDevice::KestoStateGlobalUpdater::getInstance().signalUpdatingChanged.connect(
        [this](bool updating) { _isUpdating.set(updating); });
}

HardwareControlToolbarPresenter::~HardwareControlToolbarPresenter() = default;

Kes::IView* HardwareControlToolbarPresenter::getView()
{
    return _view.get();
}

void HardwareControlToolbarPresenter::addToolButton(Kes::IView& view)
{
    _view->addToolButton(view);
}

void HardwareControlToolbarPresenter::setCanPowerOff(bool can)
{
    if (can == _canPowerOff)
        return;
    _canPowerOff = can;
    _view->setCanPowerOff(_getCanPowerOff());
}

bool HardwareControlToolbarPresenter::_getCanPowerOff() const
{
    return _canPowerOff && !KesDevice::KestoStateGlobalUpdater::getInstance().isUpdating();
}

void HardwareControlToolbarPresenter::_onUpdatingChanged(bool updating)
{
    _view->setCanPowerOff(_canPowerOff && !updating);
}

void HardwareControlToolbarPresenter::_updateCanStart()
{
    _view->setCanStart(_model.getCanStart());
}

void HardwareControlToolbarPresenter::_updateCanStop()
{
    _view->setCanStop(_model.getCanStop());
}

} // namespace KesProgram
