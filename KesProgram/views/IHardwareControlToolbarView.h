#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The tool buttons that start and stop a test. GUI thread, except as noted.
class KES_EXPORT IHardwareControlToolbarView : public Kes::IView {
public:
    /// The user has chosen the command, with the button or a key. A change from another thread may be on its
    /// way, so a slot checks for itself whether the command still makes sense.
    sigc::signal<void()> signalStart;
    sigc::signal<void()> signalStop;
    sigc::signal<void()> signalPowerOff;

    /// Any thread: at once on the GUI thread, queued for it elsewhere.
    virtual void setCanStart(bool can) = 0;
    /// Any thread, as `setCanStart`.
    virtual void setCanStop(bool can) = 0;
    /// Any thread, as `setCanStart`. Shows or hides the button.
    virtual void setCanPowerOff(bool can) = 0;
    /// Puts a button after those already there. A view that is not a widget is ignored.
    virtual void addToolButton(Kes::IView& view) = 0;
};

} // namespace KesProgram
