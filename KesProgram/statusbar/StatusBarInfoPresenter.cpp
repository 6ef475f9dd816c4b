#include <KesProgram/statusbar/StatusBarInfoPresenter.h>

#include <KesCommon/Connection.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/views/StatusBarInfoView.h>

#include <atomic>

namespace KesProgram {

class StatusBarInfoPresenter::Impl {
public:
    explicit Impl(ProgramModel& model) : _model(model)
    {
        _connection = _model.signalStateChanged.connect([this] { _postUpdate(); });
        _view.setInfo(_model.getState());
    }

    StatusBarInfoView& getView() { return _view; }

private:
    /// Any thread. The update reads the newest text, so one that is still queued serves this change too.
    void _postUpdate()
    {
        if (!_isQueued.exchange(true))
            _guard.safeBeginUpdateView([this] { _updateState(); });
    }

    void _updateState()
    {
        _isQueued = false;
        _view.setInfo(_model.getState());
    }

    ProgramModel& _model;
    StatusBarInfoView _view;
    std::atomic<bool> _isQueued{false};
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _connection;
};

StatusBarInfoPresenter::StatusBarInfoPresenter(ProgramModel& model) : _impl(std::make_unique<Impl>(model)) {}

StatusBarInfoPresenter::~StatusBarInfoPresenter() = default;

Kes::IView* StatusBarInfoPresenter::getView()
{
    return &_impl->getView();
}

} // namespace KesProgram
