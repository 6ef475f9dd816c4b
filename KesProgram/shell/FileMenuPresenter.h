#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>
#include <KesProgram/shell/HardwareRunningWatch.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesProgram {

class IFileMenuView;
class ProgramBasePresenter;

/// The menu of the archive file: New, Open, Save, Save as. New and Open are off while the output of any
/// hardware runs. Made and owned by the program. GUI thread.
class KES_EXPORT FileMenuPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The shell outlives the presenter.
    explicit FileMenuPresenter(ProgramBasePresenter* shell);
    ~FileMenuPresenter() override;

    Kes::IView* getView() override;

private:
    void _onHardwareIsRunningChanged(bool running);

    std::unique_ptr<IFileMenuView> _view;
    HardwareRunningWatch _hardwareIsRunning;
};

} // namespace KesProgram
