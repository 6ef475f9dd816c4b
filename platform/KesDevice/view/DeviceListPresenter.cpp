#include <KesDevice/view/DeviceListPresenter.h>

#include <KesDevice/view/DeviceListView.h>

namespace KesDevice {

DeviceListPresenter::DeviceListPresenter(HardwareDraft& draft, DeviceIdentification& identification)
    : _draft(draft), _identification(identification), _view(std::make_unique<DeviceListView>())
{
    _view->signalIdentify.connect(sigc::mem_fun(*this, &DeviceListPresenter::_onIdentify));
    _view->signalMove.connect(sigc::mem_fun(_draft, &HardwareDraft::move));
    _view->signalRemove.connect(sigc::mem_fun(_draft, &HardwareDraft::remove));
    _view->signalAuxDC.connect(sigc::mem_fun(_draft, &HardwareDraft::setAuxDC));
    _draft.signalChanged.connect(sigc::mem_fun(*this, &DeviceListPresenter::_onChanged));
    _onChanged();
}

DeviceListPresenter::~DeviceListPresenter()
{
    // Taking a focused editor out of its window makes it report.
    notify_callbacks();
}

bool DeviceListPresenter::focusProblem()
{
    const auto place = _draft.findProblem();
    if (place)
        _view->focusVolts(*place);
    return place.has_value();
}

void DeviceListPresenter::_onIdentify(std::size_t index)
{
    if (index < _draft.getDevices().size())
        if (const auto address = Kesto::Address::parse(_draft.getDevices()[index].address))
            _identification.identify(*address);
}

void DeviceListPresenter::_onChanged()
{
    _view->setDevices(_draft.getDevices());
}

} // namespace KesDevice
