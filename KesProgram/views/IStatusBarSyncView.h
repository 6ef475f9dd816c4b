#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <string>

namespace KesProgram {

/// The button that names the synchronisation mode. GUI thread.
class KES_EXPORT IStatusBarSyncView : public Kes::IView {
public:
    /// The user asks what the mode is.
    sigc::signal<void()> signalRequestInfo;

    /// The short name, as it stands on the button.
    virtual void setName(const std::string& name) = 0;
    /// The full name; also read out to who cannot see the tooltip.
    virtual void setTooltip(const std::string& text) = 0;
    /// Off for a mode about which there is no more to say. On at first.
    virtual void setEnabledInfo(bool enabled) = 0;
};

} // namespace KesProgram
