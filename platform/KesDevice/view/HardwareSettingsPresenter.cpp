#include <KesDevice/view/HardwareSettingsPresenter.h>

#include <KesCommon/EmitLast.h>
#include <KesDevice/view/HardwareSettingsView.h>
#include <KesDevice/view/detail/DeviceViewText.h>

#include <utility>

namespace KesDevice {

using lng::DeviceView::get;

HardwareSettingsPresenter::HardwareSettingsPresenter(BackgroundJobs& jobs,
                                                     std::function<HardwareManager*()> edited, bool local)
    : _edited(std::move(edited)),
      _draft(*_edited()),
      _identification(_draft, jobs, _edited),
      _devices(_draft, _identification),
      _search(_draft, _identification, jobs),
      _sync(_draft),
      _view(std::make_unique<HardwareSettingsView>())
{
    _identification.adoptKnown();
    _view->setParts(*_devices.getView(), *_search.getView(), *_sync.getView());
    _view->setNotice(local ? get("Settings.local") : "");
    _view->signalConfirmed.connect(sigc::mem_fun(*this, &HardwareSettingsPresenter::_onConfirmed));
    _view->signalCancelled.connect(sigc::mem_fun(*this, &HardwareSettingsPresenter::_onCancelled));
}

HardwareSettingsPresenter::~HardwareSettingsPresenter() = default;

void HardwareSettingsPresenter::open(Kes::IView* parent)
{
    // The window must not stand between the user and Stop.
    _view->open(parent, !_edited()->isBusy());
    if (!std::exchange(_isOpen, true))
        _search.focusAddress();
}

void HardwareSettingsPresenter::cancel()
{
    _view->close();
    _onCancelled();
}

void HardwareSettingsPresenter::_onConfirmed()
{
    _view->setProblem({});
    // What is typed but not added yet is meant to be part of it.
    if (!_search.addPending() || _devices.focusProblem()) {
        _view->setProblem(get("Settings.wrongValues"));
        return;
    }
    if (_edited()->isBusy()) {
        _view->setProblem(get("Settings.busy"));
        return;
    }
    auto hardware = _draft.take();
    _view->close();
    try {
        signalConfirmed.emit(hardware);
    } catch (...) {
        Kes::emitLast(signalClosed);
        throw;
    }
    Kes::emitLast(signalClosed);
}

void HardwareSettingsPresenter::_onCancelled()
{
    Kes::emitLast(signalClosed);
}

} // namespace KesDevice
