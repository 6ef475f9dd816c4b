#include <KesProgram/statusbar/StatusBarHardwareKestoIconsPresenter.h>

#include <KesCommon/Connection.h>
#include <KesCommon/SignalGate.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesDevice/Kesto.h>
#include <KesProgram/views/StatusBarHardwareKestoIconsView.h>

namespace KesProgram {

class StatusBarHardwareKestoIconsPresenter::Impl {
public:
    explicit Impl(KesDevice::Kesto& kesto)
    {
        // No change is announced between the two.
        const Kes::SignalGate::Guard gate;
        _view.setAuxDCEnabled(kesto.auxDC().getEnable());
        _connection = kesto.auxDC().signalEnableChanged.connect(
            [this](bool enabled) { _onAuxDCEnableChanged(enabled); });
    }

    StatusBarHardwareKestoIconsView& getView() { return _view; }

private:
    /// Any thread.
    void _onAuxDCEnableChanged(bool enabled)
    {
        _guard.safeBeginUpdateView([this, enabled] { _view.setAuxDCEnabled(enabled); });
    }

    StatusBarHardwareKestoIconsView _view;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _connection;
};

StatusBarHardwareKestoIconsPresenter::StatusBarHardwareKestoIconsPresenter(KesDevice::Kesto& kesto)
    : _impl(std::make_unique<Impl>(kesto))
{}

StatusBarHardwareKestoIconsPresenter::~StatusBarHardwareKestoIconsPresenter() = default;

Kes::IView* StatusBarHardwareKestoIconsPresenter::getView()
{
    return &_impl->getView();
}

} // namespace KesProgram
