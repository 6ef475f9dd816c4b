#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

namespace KesProgram {

/// The header of the main window: the menus, and beside them the toolbars. GUI thread.
class KES_EXPORT IProgramMainMenuView : public Kes::IView {
public:
    /// Puts a menu after those already there. Null, or a view that is not a widget, changes nothing.
    virtual void addMenu(Kes::IView* view) = 0;
    /// Puts a separator and a toolbar after those already there. Null, or a view that is not a widget,
    /// changes nothing.
    virtual void addToolbar(Kes::IView* view) = 0;
};

} // namespace KesProgram
