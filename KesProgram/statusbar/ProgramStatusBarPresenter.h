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
class KES_EXPORT ProgramStatusBarPresenter : public Kes::IPresenter {
public:
    /// The model has been initialised and outlives the presenter.
    explicit ProgramStatusBarPresenter(ProgramModel& model);
    ~ProgramStatusBarPresenter() override;

    Kes::IView* getView() override;

private:
    StatusBarFilePresenter _file;
    StatusBarInfoPresenter _info;
    StatusBarHardwarePresenter _hardware;
    std::unique_ptr<IProgramStatusBarView> _view;
};

} // namespace KesProgram
