#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesDevice/view/DeviceListPresenter.h>
#include <KesDevice/view/DeviceSearchPresenter.h>
#include <KesDevice/view/HardwareSettingsView.h>
#include <KesDevice/view/SyncChoicePresenter.h>

#include <functional>
#include <memory>

namespace KesDevice {

/// One editing of a configuration, from the opening of the window to OK or Cancel. GUI thread.
///
/// What the user does changes a draft. OK is refused, with the reason in the window, while a value is not
/// accepted and while the configuration in use is busy; an address that is typed but not added yet is added
/// first.
class KES_EXPORT HardwareSettingsPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// `edited` gives the configuration in use at any time; `local`: it is the program's own. The jobs
    /// outlive the presenter.
    HardwareSettingsPresenter(BackgroundJobs& jobs, std::function<HardwareManager*()> edited, bool local);
    ~HardwareSettingsPresenter() override;

    /// OK: the new configuration, for the slot to take. The window is closed already; `signalClosed` follows,
    /// also when a slot throws.
    sigc::signal<void(std::unique_ptr<HardwareManager>&)> signalConfirmed;
    /// The window has been closed, after OK or Cancel. The presenter is not destroyed in a slot.
    sigc::signal<void()> signalClosed;

    /// Shows the window, or brings it to the front. It is modal unless the devices are in use, so that it
    /// does not stand between the user and Stop.
    void open(Kes::IView* parent);
    /// Closes the window, as Cancel does.
    void cancel();
    Kes::IView* getView() override { return _view.get(); }

private:
    void _onConfirmed();
    void _onCancelled();

    std::function<HardwareManager*()> _edited;
    HardwareDraft _draft;
    DeviceIdentification _identification;
    DeviceListPresenter _devices;
    DeviceSearchPresenter _search;
    SyncChoicePresenter _sync;
    std::unique_ptr<HardwareSettingsView> _view;
    bool _isOpen = false;
};

} // namespace KesDevice
