#include <KesProgram/statusbar/StatusBarHardwarePresenter.h>

#include <KesCommon/Connection.h>
#include <KesCommon/SignalGate.h>
#include <KesCommonView/CollectionBoxView.h>
#include <KesCommonView/NotifyCollectionBasePresenter.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesDevice/view/KestoStateUpdaterSwitchPresenter.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoPresenter.h>
#include <KesProgram/statusbar/StatusBarSyncPresenter.h>
#include <KesProgram/views/StatusBarHardwareView.h>

namespace KesProgram {

namespace {

std::unique_ptr<Kes::IPresenter> makeKestoPresenter(KesDevice::Kesto* kesto)
{
    return std::make_unique<StatusBarHardwareKestoPresenter>(*kesto);
}

} // namespace

class StatusBarHardwarePresenter::Impl {
public:
    explicit Impl(ProgramModel& model) : _model(model)
    {
        _view.setStateUpdateView(_stateUpdate.getView());
        // No configuration is replaced between the two.
        const Kes::SignalGate::Guard gate;
        // Waiting, not posted: after the signal the old configuration may be gone, with devices that the
        // old rows refer to.
        _hardwareConnection = _model.signalHardwareChanged.connect(
            [this] { _guard.safeWaitUpdateView([this] { _update(); }); });
        _update();
    }

    StatusBarHardwareView& getView() { return _view; }

private:
    using Kestos =
        Kes::NotifyCollectionBasePresenter<KesDevice::Kesto*, Kes::NotifyCollection<KesDevice::Kesto*>>;

    /// Holding the gate keeps the configuration that the model names alive until all is connected to it:
    /// it is destroyed after the announcement of its successor, which comes through this slot as well.
    void _update()
    {
        const Kes::SignalGate::Guard gate;
        _kestos.reset();
        auto& hardware = *_model.getHardware();
        _kestos = std::make_unique<Kestos>(makeKestoPresenter, std::make_unique<Kes::CollectionBoxView>());
        _kestos->setCollection(&hardware.getKestos());
        _view.setKestoCollection(_kestos->getView());

        auto sync = std::make_unique<StatusBarSyncPresenter>(hardware);
        _view.setSyncView(sync->getView());
        _sync = std::move(sync);
    }

    ProgramModel& _model;
    StatusBarHardwareView _view;
    KesDevice::KestoStateUpdaterSwitchPresenter _stateUpdate;
    std::unique_ptr<Kestos> _kestos;
    std::unique_ptr<StatusBarSyncPresenter> _sync;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _hardwareConnection;
};

StatusBarHardwarePresenter::StatusBarHardwarePresenter(ProgramModel& model)
    : _impl(std::make_unique<Impl>(model))
{}

StatusBarHardwarePresenter::~StatusBarHardwarePresenter() = default;

Kes::IView* StatusBarHardwarePresenter::getView()
{
    return &_impl->getView();
}

} // namespace KesProgram
