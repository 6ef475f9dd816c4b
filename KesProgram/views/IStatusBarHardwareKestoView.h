#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <string>

namespace KesProgram {

/// One device of the hardware area. GUI thread.
class KES_EXPORT IStatusBarHardwareKestoView : public Kes::IView {
public:
    virtual void setKestoType(const std::string& type) = 0;
    /// Null, or a view that is not a widget, empties the place.
    virtual void setState(Kes::IView* view) = 0;
    /// As `setState`.
    virtual void setIcons(Kes::IView* view) = 0;
    /// What the row says as a whole to whoever does not see it.
    virtual void setSpokenText(const std::string& text) = 0;
    /// What is unknown or wrong, in words beside the rest; empty: nothing.
    virtual void setRemark(const std::string& text) = 0;
};

} // namespace KesProgram
