#pragma once

#include <sigc++/sigc++.h>

#include <functional>
#include <memory>

namespace KesProgram {

/// Postpones actions until no modal dialog is open, so that a presenter does not die, for instance, under a
/// dialog that it shows itself. None of them happens once the object has died. GUI thread.
class ModalDialogs {
public:
    ModalDialogs();
    ~ModalDialogs();
    ModalDialogs(const ModalDialogs&) = delete;
    ModalDialogs& operator=(const ModalDialogs&) = delete;

    /// Runs the function at once when no dialog is open, else later, when none is.
    void whenClosed(std::function<void()> function);
    /// Runs the function later, from the main loop itself: never inside a wait, where a dialog would hold
    /// up whoever waits.
    void later(std::function<void()> function);

private:
    struct State;

    std::shared_ptr<State> _state;
    sigc::connection _allClosed;
};

} // namespace KesProgram
