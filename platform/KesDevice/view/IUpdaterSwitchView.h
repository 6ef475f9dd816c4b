#pragma once

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesDevice {

/// A switch with a label. GUI thread.
class KES_EXPORT IUpdaterSwitchView : public Kes::IView {
public:
    /// The user has switched; the argument is the new state.
    sigc::signal<void(bool)> signalSwitched;

    /// Without a signal.
    virtual void setIsOn(bool on) = 0;
};

} // namespace KesDevice
