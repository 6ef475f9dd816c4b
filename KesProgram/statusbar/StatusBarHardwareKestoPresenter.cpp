#include <KesProgram/statusbar/StatusBarHardwareKestoPresenter.h>

#include <KesCommon/Connection.h>
#include <KesCommon/SignalGate.h>
#include <KesCommonView/LatestUpdate.h>
#include <KesDevice/Kesto.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoIconsPresenter.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoStatePresenter.h>
#include <KesProgram/views/StatusBarHardwareKestoView.h>

namespace KesProgram {

class StatusBarHardwareKestoPresenter::Impl {
public:
    explicit Impl(KesDevice::Kesto& kesto)
        : _state(kesto), _icons(kesto), _type([this](const std::string& type) { _view.setKestoType(type); })
    {
        _view.setState(_state.getView());
        _view.setIcons(_icons.getView());
        // A device tells its type when it is connected, which is also when its state becomes known.
        const Kes::SignalGate::Guard gate;
        _connection = kesto.signalOperationErrorChanged.connect(
            [this, &kesto](const auto&) { _type.set(kesto.getIdentifer().getTypeName()); });
        _type.set(kesto.getIdentifer().getTypeName());
    }

    StatusBarHardwareKestoView& getView() { return _view; }

private:
    StatusBarHardwareKestoView _view;
    StatusBarHardwareKestoStatePresenter _state;
    StatusBarHardwareKestoIconsPresenter _icons;
    Kes::LatestUpdate<std::string> _type;
    Kes::ScopedConnection _connection;
};

StatusBarHardwareKestoPresenter::StatusBarHardwareKestoPresenter(KesDevice::Kesto& kesto)
    : _impl(std::make_unique<Impl>(kesto))
{}

StatusBarHardwareKestoPresenter::~StatusBarHardwareKestoPresenter() = default;

Kes::IView* StatusBarHardwareKestoPresenter::getView()
{
    return &_impl->getView();
}

} // namespace KesProgram
