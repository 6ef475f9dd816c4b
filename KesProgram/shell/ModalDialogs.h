#pragma once

#include <KesCommon/SignalGate.h>

#include <functional>
#include <memory>

namespace KesProgram {

/// The modal dialogs of the shell that are open further up on the stack of the GUI thread.
///
/// A dialog runs a main loop of its own, so anything can happen before the function that shows it goes on.
/// What must not happen under it (the death of the presenter above all) waits here. Owned by the base
/// presenter, in whose name functions are kept: none is called once the object has died. GUI thread.
class ModalDialogs {
public:
    ModalDialogs();
    ~ModalDialogs();
    ModalDialogs(const ModalDialogs&) = delete;
    ModalDialogs& operator=(const ModalDialogs&) = delete;

    /// Whether one is open.
    bool any() const;
    /// Runs the function at once when none is open, else later, when none is.
    void whenClosed(std::function<void()> function);
    /// Runs the function later, from the main loop itself: never inside a wait, where a dialog would hold
    /// up whoever waits.
    void later(std::function<void()> function);

private:
    struct State;

    std::shared_ptr<State> _state;

public:
    /// Stands for a dialog, or for a function that may show some. Meanwhile the signal gate is free: slots on
    /// other threads go on, although the dialog may be shown from inside an emission.
    class Scope {
    public:
        explicit Scope(const ModalDialogs& dialogs);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Kes::SignalGate::Release _gate;
        std::shared_ptr<State> _state;
    };
};

} // namespace KesProgram
