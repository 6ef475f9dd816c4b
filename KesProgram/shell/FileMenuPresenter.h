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
///
/// Only for a program with archive logic (`ProgramModel::hasArchiveLogic`). The commands are those of the
/// shell, with its questions: a program that wants more of one overrides `ProgramBasePresenter::saveArchive`
/// or its neighbours.
class KES_EXPORT FileMenuPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The shell outlives the presenter.
    explicit FileMenuPresenter(ProgramBasePresenter* shell);
    ~FileMenuPresenter() override;

    /// A menu item, for `ProgramMainMenuPresenter::addMenu`.
    Kes::IView* getView() override;

private:
    void _onHardwareIsRunningChanged(bool running);

    std::unique_ptr<IFileMenuView> _view;
    HardwareRunningWatch _hardwareIsRunning;
};

} // namespace KesProgram
