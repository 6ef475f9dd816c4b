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

    virtual void setName(const std::string& name) = 0;
    virtual void setTooltip(const std::string& text) = 0;
    virtual void setEnabledInfo(bool enabled) = 0;
};

} // namespace KesProgram
