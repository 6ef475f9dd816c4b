#include <KesProgram/statusbar/StatusBarSyncPresenter.h>

#include <KesDevice/HardwareManager.h>
#include <KesDevice/view/SyncModeInfoWindowPresenter.h>
#include <KesProgram/views/StatusBarSyncView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

class StatusBarSyncPresenter::Impl : public sigc::trackable {
public:
    explicit Impl(KesDevice::HardwareManager& hardware) : _hardware(hardware)
    {
        const auto& manager = _hardware.getSyncManager();
        const auto* name = manager.getActiveMode().getShortName();
        _view.setName(name ? name : "");
        const auto* fullName = manager.getActiveMode().getName();
        _view.setTooltip(fullName ? fullName : "");
        const bool hasInfo = KesDevice::SyncModeInfoWindowPresenter::hasInfo(&_hardware);
        if (hasInfo)
            _view.signalRequestInfo.connect(sigc::mem_fun(*this, &Impl::_onRequestInfo));
        _view.setEnabledInfo(hasInfo);
    }

    StatusBarSyncView& getView() { return _view; }

private:
    /// The configuration may be replaced while the window is open, and this object with it: nothing may be
    /// touched afterwards.
    void _onRequestInfo() { _info.show(&_hardware, &_view); }

    KesDevice::HardwareManager& _hardware;
    StatusBarSyncView _view;
    KesDevice::SyncModeInfoWindowPresenter _info;
};

StatusBarSyncPresenter::StatusBarSyncPresenter(KesDevice::HardwareManager& hardware)
    : _impl(std::make_unique<Impl>(hardware))
{}

StatusBarSyncPresenter::~StatusBarSyncPresenter() = default;

Kes::IView* StatusBarSyncPresenter::getView()
{
    return &_impl->getView();
}

} // namespace KesProgram
