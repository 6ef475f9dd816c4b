#include <KesProgram/statusbar/StatusBarHardwareKestoStatePresenter.h>

#include <KesCommon/Connection.h>
#include <KesCommon/SignalGate.h>
#include <KesCommonView/LatestUpdate.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/Kesto.h>
#include <KesProgram/views/StatusBarHardwareKestoStateView.h>

namespace KesProgram {

class StatusBarHardwareKestoStatePresenter::Impl {
public:
    using OperationState = Kes::Nullable<std::string>;

    explicit Impl(KesDevice::Kesto& kesto)
        : _state([this](const OperationState& error) { _onOperationStateChanged(error); })
    {
        _view.setText(kesto.getAddress().to_string('.'));
        // No change is announced between the two, to be overtaken by the older state.
        const Kes::SignalGate::Guard gate;
        _connection = kesto.signalOperationErrorChanged.connect(
            [this](const OperationState& error) { _state.set(error); });
        _state.set(kesto.getOperationError());
    }

    StatusBarHardwareKestoStateView& getView() { return _view; }

private:
    void _onOperationStateChanged(const OperationState& error)
    {
        if (!error.hasValue()) {
            _view.setExtendedText("");
            _view.setIsValid({});
        } else if (error.getValue().empty()) {
            _view.setExtendedText(lng::HardwareManager::get("Common.KestoStateOk"));
            _view.setIsValid(true);
        } else {
            _view.setExtendedText(error.getValue());
            _view.setIsValid(false);
        }
    }

    StatusBarHardwareKestoStateView _view;
    Kes::LatestUpdate<OperationState> _state;
    Kes::ScopedConnection _connection;
};

StatusBarHardwareKestoStatePresenter::StatusBarHardwareKestoStatePresenter(KesDevice::Kesto& kesto)
    : _impl(std::make_unique<Impl>(kesto))
{}

StatusBarHardwareKestoStatePresenter::~StatusBarHardwareKestoStatePresenter() = default;

Kes::IView* StatusBarHardwareKestoStatePresenter::getView()
{
    return &_impl->getView();
}

} // namespace KesProgram
