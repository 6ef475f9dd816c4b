#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>
#include <KesProgram/shell/ProgramAboutWindowActivatorPresenter.h>
#include <KesProgram/shell/ProgramHelpPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesProgram {

class IHelpMenuView;

/// The menu About and Help. Made and owned by the program. GUI thread.
///
/// About shows name and version of the program in a window that dies with this presenter; Help opens the file
/// that `ProgramModel::getHelpFileName` names. Both are always on, also while a test runs.
class KES_EXPORT HelpMenuPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The parent, whose view the windows are shown over, and the model outlive the presenter. The view is
    /// asked for when it is needed: the parent may be without one until then.
    HelpMenuPresenter(Kes::IPresenter* parent, ProgramModel& model);
    ~HelpMenuPresenter() override;

    /// A menu item, for `ProgramMainMenuPresenter::addMenu`.
    Kes::IView* getView() override;

private:
    ProgramAboutWindowActivatorPresenter _about;
    ProgramHelpPresenter _help;
    std::unique_ptr<IHelpMenuView> _view;
};

} // namespace KesProgram
