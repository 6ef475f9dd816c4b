#include <KesProgram/statusbar/StatusBarHardwareKestoPresenter.h>

#include <KesCommon/Connection.h>
#include <KesCommon/SignalGate.h>
#include <KesCommonView/LatestUpdate.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/Kesto.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoIconsPresenter.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoStatePresenter.h>
#include <KesProgram/views/StatusBarHardwareKestoView.h>

namespace KesProgram {

class StatusBarHardwareKestoPresenter::Impl {
public:
    explicit Impl(KesDevice::Kesto& kesto)
        : _address(kesto.getAddress().to_string('.')),
          _state(kesto),
          _icons(kesto),
          _status([this](const Status& status) { _show(status); })
    {
        _view.setState(_state.getView());
        _view.setIcons(_icons.getView());
        // A device says its type when it is connected, which is also when its state becomes known.
        const Kes::SignalGate::Guard gate;
        _connection = kesto.signalOperationErrorChanged.connect([this, &kesto](const OperationState& state) {
            _status.set({kesto.getIdentifer().getTypeName(), state});
        });
        _status.set({kesto.getIdentifer().getTypeName(), kesto.getOperationError()});
    }

    StatusBarHardwareKestoView& getView() { return _view; }

private:
    using OperationState = Kes::Nullable<std::string>;

    struct Status {
        std::string type;
        OperationState state;
    };

    static std::string _describe(const OperationState& state)
    {
        if (!state.hasValue())
            return lng::HardwareManager::get("Common.KestoStateUnknown");
        return state.getValue().empty() ? lng::HardwareManager::get("Common.KestoStateOk") : state.getValue();
    }

    void _show(const Status& status)
    {
        const std::string words = _describe(status.state);
        const bool isReady = status.state.hasValue() && status.state.getValue().empty();
        _view.setKestoType(status.type);
        // A fault names its device itself.
        const bool isNamed = words.find(_address) != std::string::npos;
        _view.setSpokenText(isNamed ? words : status.type + ", " + _address + ", " + words);
        _view.setRemark(isReady ? "" : words);
    }

    std::string _address;
    StatusBarHardwareKestoView _view;
    StatusBarHardwareKestoStatePresenter _state;
    StatusBarHardwareKestoIconsPresenter _icons;
    Kes::LatestUpdate<Status> _status;
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
