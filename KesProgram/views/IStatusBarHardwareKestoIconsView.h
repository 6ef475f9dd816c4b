#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

namespace KesProgram {

/// What is switched on at one device, as icons. GUI thread.
class KES_EXPORT IStatusBarHardwareKestoIconsView : public Kes::IView {
public:
    /// Whether the auxiliary supply is on.
    virtual void setAuxDCEnabled(bool enabled) = 0;
};

} // namespace KesProgram
