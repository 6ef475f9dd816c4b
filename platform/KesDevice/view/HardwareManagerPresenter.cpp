#include <KesDevice/view/HardwareManagerPresenter.h>

#include <KesCommonView/UpdateViewGuard.h>
#include <KesDevice/HardwareControl.h>
#include <KesDevice/view/HardwareSettingsPresenter.h>

namespace KesDevice {

class HardwareManagerPresenter::Impl : public sigc::trackable {
public:
    explicit Impl(HardwareManagerPresenter& owner) : _owner(owner) {}

    void edit(Kes::IView* parent, HardwareManager* hardware, bool local)
    {
        if (_isOpen) {
            _settings->open(parent);
            return;
        }
        // The global configuration may be replaced while the window is open.
        const bool isCurrent = !local && hardware == HardwareControl::getInstance();
        _settings = std::make_unique<HardwareSettingsPresenter>(
            _jobs, [=] { return isCurrent ? HardwareControl::getInstance() : hardware; }, local);
        _settings->signalConfirmed.connect(_owner.signalHardwareChanging.make_slot());
        _settings->signalClosed.connect(sigc::mem_fun(*this, &Impl::_onClosed));
        _isOpen = true;
        _settings->open(parent);
    }

    void close()
    {
        if (_isOpen)
            _settings->cancel();
    }

    Kes::IView* getView() { return _isOpen ? _settings->getView() : nullptr; }

private:
    void _onClosed()
    {
        _isOpen = false;
        // Called from inside the window, which must not be destroyed before it has returned.
        _guard.safeBeginUpdateView([this] {
            if (!_isOpen)
                _settings.reset();
        });
    }

    HardwareManagerPresenter& _owner;
    BackgroundJobs _jobs;
    std::unique_ptr<HardwareSettingsPresenter> _settings;
    bool _isOpen = false;
    Kes::UpdateViewGuard _guard;
};

HardwareManagerPresenter::HardwareManagerPresenter() : _impl(std::make_unique<Impl>(*this)) {}

HardwareManagerPresenter::~HardwareManagerPresenter() = default;

void HardwareManagerPresenter::edit(Kes::IView* parent, HardwareManager* hardware, bool local)
{
    if (hardware)
        _impl->edit(parent, hardware, local);
}

void HardwareManagerPresenter::close()
{
    _impl->close();
}

Kes::IView* HardwareManagerPresenter::getView()
{
    return _impl->getView();
}

} // namespace KesDevice
