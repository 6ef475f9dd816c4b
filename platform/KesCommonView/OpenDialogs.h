#pragma once

#include <KesCommon/SignalGate.h>

#include <sigc++/sigc++.h>

namespace Kes {

/// The modal dialogs of the process that are open further up on the stack of the GUI thread.
///
/// A dialog runs a main loop of its own, so anything can happen before the function that shows it returns.
/// Check here before an action that is unsafe during a dialog, above all destroying its owner. GUI thread.
class KES_EXPORT OpenDialogs {
public:
    /// Whether a dialog is open.
    static bool any();
    /// Emitted when the last one has been closed, from the end of its scope: what showed it is still on the
    /// stack.
    static sigc::signal<void()>& signalAllClosed();

    /// Stands for a dialog, or for a function that may show some. Meanwhile the signal gate is free: slots on
    /// other threads continue, although the dialog may be shown from inside an emission.
    class KES_EXPORT Scope {
    public:
        Scope();
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        SignalGate::Release _gate;
    };
};

} // namespace Kes
