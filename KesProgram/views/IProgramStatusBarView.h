#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

namespace KesProgram {

/// The footer of the main window with its three areas. Null, or a view that is not a widget, changes
/// nothing. GUI thread.
class KES_EXPORT IProgramStatusBarView : public Kes::IView {
public:
    virtual void setInfoArea(Kes::IView* view) = 0;
    virtual void setArchiveArea(Kes::IView* view) = 0;
    virtual void setHardwareArea(Kes::IView* view) = 0;
};

} // namespace KesProgram
