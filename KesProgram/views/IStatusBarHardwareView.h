#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

namespace KesProgram {

/// The hardware area of the status bar: synchronisation, devices, switch of the state updates.
/// Each setter replaces what its place holds; null, or a view that is not a widget, empties it.
/// GUI thread.
class KES_EXPORT IStatusBarHardwareView : public Kes::IView {
public:
    virtual void setSyncView(Kes::IView* view) = 0;
    virtual void setKestoCollection(Kes::IView* view) = 0;
    virtual void setStateUpdateView(Kes::IView* view) = 0;
};

} // namespace KesProgram
