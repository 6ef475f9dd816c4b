#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesProgram {

class IProgramMainMenuView;

/// The header of the main window, to which a program adds its menus and toolbars, from left to right in the
/// order of the calls. Owned by the base presenter. GUI thread.
///
/// Nothing can be taken out again; a view that dies leaves its place by itself.
class KES_EXPORT ProgramMainMenuPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    ProgramMainMenuPresenter();
    ~ProgramMainMenuPresenter() override;

    Kes::IView* getView() override;

    /// Puts a menu after those already there. The view stays its presenter's.
    void addMenu(Kes::IView* view);
    /// Puts a separator and a toolbar after those already there. The view stays its presenter's.
    void addToolbar(Kes::IView* view);

private:
    std::unique_ptr<IProgramMainMenuView> _view;
};

} // namespace KesProgram
