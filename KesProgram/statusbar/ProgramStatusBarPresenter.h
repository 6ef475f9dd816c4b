#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>
#include <KesProgram/statusbar/StatusBarFilePresenter.h>
#include <KesProgram/statusbar/StatusBarHardwarePresenter.h>
#include <KesProgram/statusbar/StatusBarInfoPresenter.h>

#include <memory>

namespace KesProgram {

class IProgramStatusBarView;
class ProgramModel;

/// The footer of the main window: archive file, what the program is doing, hardware. Owned by the base
/// presenter. GUI thread.
///
/// A program that wants another bar, or none, overrides `ProgramBasePresenter::_createStatusBar`. Each part
/// follows the model by itself, whichever thread changes it; a program says what it is doing with
/// `ProgramModel::_setState`.
class KES_EXPORT ProgramStatusBarPresenter : public Kes::IPresenter {
public:
    /// The model has been initialised (`ProgramModel::init`) and outlives the presenter.
    explicit ProgramStatusBarPresenter(ProgramModel& model);
    ~ProgramStatusBarPresenter() override;

    /// The whole bar, for `IProgramView::setFooter`.
    Kes::IView* getView() override;

private:
    StatusBarFilePresenter _file;
    StatusBarInfoPresenter _info;
    StatusBarHardwarePresenter _hardware;
    std::unique_ptr<IProgramStatusBarView> _view;
};

} // namespace KesProgram
