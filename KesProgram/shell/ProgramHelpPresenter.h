#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/HelpView.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

class ProgramModel;

/// Opens the program's help file. GUI thread.
///
/// Which file that is, `ProgramModel::getHelpFileName` decides each time, so it follows the language of the
/// process.
class KES_EXPORT ProgramHelpPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// Both outlive the presenter.
    ProgramHelpPresenter(Kes::IPresenter* parent, ProgramModel& model);

    /// Not a widget: there is nothing to place in a window.
    Kes::IView* getView() override { return &_view; }

    /// Opens the file in the desktop's application; a failure is shown over the parent's view.
    void show();

private:
    Kes::IPresenter* _parent;
    ProgramModel& _model;
    Kes::HelpView _view;
};

} // namespace KesProgram
