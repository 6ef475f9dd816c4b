#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/AboutWindowActivatorPresenter.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

class ProgramModel;

/// Shows the about window with the program's name and the version of its package. GUI thread.
class KES_EXPORT ProgramAboutWindowActivatorPresenter : public sigc::trackable {
public:
    /// Both outlive the presenter.
    ProgramAboutWindowActivatorPresenter(Kes::IPresenter* parent, ProgramModel& model);

    void show();

private:
    Kes::IPresenter* _parent;
    ProgramModel& _model;
    Kes::AboutWindowActivatorPresenter _activator;
};

} // namespace KesProgram
