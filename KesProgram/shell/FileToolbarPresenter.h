#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>
#include <KesProgram/shell/HardwareRunningWatch.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesProgram {

class IFileToolbarView;
class ProgramBasePresenter;

/// The tool buttons of the archive file: New, Open, Save. New and Open are off while the output of any
/// hardware runs. The Save button always asks for a file name, unlike the menu, where Save and Save as are
/// two commands. Made and owned by the program. GUI thread.
///
/// Only for a program with archive logic (`ProgramModel::hasArchiveLogic`). The keys are those of
/// `FileMenuPresenter`.
class KES_EXPORT FileToolbarPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The shell outlives the presenter.
    explicit FileToolbarPresenter(ProgramBasePresenter* shell);
    ~FileToolbarPresenter() override;

    /// A toolbar, for `ProgramMainMenuPresenter::addToolbar`.
    Kes::IView* getView() override;

private:
    void _onHardwareIsRunningChanged(bool running);

    std::unique_ptr<IFileToolbarView> _view;
    HardwareRunningWatch _hardwareIsRunning;
};

} // namespace KesProgram
