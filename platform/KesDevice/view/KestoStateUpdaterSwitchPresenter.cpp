#include <KesDevice/view/KestoStateUpdaterSwitchPresenter.h>

#include <KesCommon/Connection.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesDevice/view/BackgroundJobs.h>
#include <KesDevice/view/UpdaterSwitchView.h>

namespace KesDevice {

class KestoStateUpdaterSwitchPresenter::Impl : public sigc::trackable {
public:
    Impl()
    {
        _updating = _updater.signalUpdatingChanged.connect(
            [this](bool) { _guard.safeUpdateView([this] { _show(); }); });
        _view.signalSwitched.connect(sigc::mem_fun(*this, &Impl::_onSwitched));
        _show();
    }

    Kes::IView* getView() { return &_view; }

private:
    void _show()
    {
        // While the user's wish is being carried out, the switch shows the wish.
        if (_jobs.size() == 0)
            _view.setIsOn(_updater.isUpdating());
    }

    void _onSwitched(bool on)
    {
        _wanted = on;
        if (_jobs.size() == 0)
            _carryOut();
    }

    /// On a thread of its own: switching off waits for the device that is just being asked.
    void _carryOut()
    {
        const bool isBegun = _jobs.run("KesUpdateSwitch", _token, [this, on = _wanted] {
            _updater.setUpdating(on);
            return [this, on] {
                if (_wanted != on)
                    _carryOut();
                else
                    _show();
            };
        });
        if (!isBegun)
            _show();
    }

    KestoStateGlobalUpdater& _updater = KestoStateGlobalUpdater::getInstance();
    BackgroundJobs _jobs;
    UpdaterSwitchView _view;
    bool _wanted = false;
    std::shared_ptr<Kes::LifetimeToken> _token = std::make_shared<Kes::LifetimeToken>();
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _updating;
};

KestoStateUpdaterSwitchPresenter::KestoStateUpdaterSwitchPresenter() : _impl(std::make_unique<Impl>()) {}

KestoStateUpdaterSwitchPresenter::~KestoStateUpdaterSwitchPresenter() = default;

Kes::IView* KestoStateUpdaterSwitchPresenter::getView()
{
    return _impl->getView();
}

} // namespace KesDevice
