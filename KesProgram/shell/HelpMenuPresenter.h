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
class KES_EXPORT HelpMenuPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The parent, whose view the windows are shown over, and the model outlive the presenter.
    HelpMenuPresenter(Kes::IPresenter* parent, ProgramModel& model);
    ~HelpMenuPresenter() override;

    Kes::IView* getView() override;

private:
    ProgramAboutWindowActivatorPresenter _about;
    ProgramHelpPresenter _help;
    std::unique_ptr<IHelpMenuView> _view;
};

} // namespace KesProgram
