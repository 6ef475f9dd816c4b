#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/AboutWindowActivatorPresenter.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

class ProgramModel;

/// Shows the about window with the program's name and the version of its package. The window is made at the
/// first call and dies with this object. GUI thread.
class KES_EXPORT ProgramAboutWindowActivatorPresenter : public sigc::trackable {
public:
    /// Both outlive the presenter. The window is shown over the parent's view, which the parent is asked for
    /// each time.
    ProgramAboutWindowActivatorPresenter(Kes::IPresenter* parent, ProgramModel& model);

    /// Returns at once; the window is not modal. A window that is open already comes to the front. The model
    /// is asked for name and version each time.
    void show();

private:
    Kes::IPresenter* _parent;
    ProgramModel& _model;
    Kes::AboutWindowActivatorPresenter _activator;
};

} // namespace KesProgram
