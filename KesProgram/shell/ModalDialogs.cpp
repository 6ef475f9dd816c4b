#include "ModalDialogs.h"

#include <glibmm/main.h>

#include <utility>
#include <vector>

namespace KesProgram {

namespace {

/// That of the dispatcher's queue, so that a flood of posts does not keep a message from the user.
constexpr int priority = 125;

} // namespace

struct ModalDialogs::State {
    unsigned count = 0;
    bool isAlive = true;
    std::vector<std::function<void()>> waiting;

    /// A function may open the next dialog, or end the life of the owner.
    void runWaiting()
    {
        while (isAlive && count == 0 && !waiting.empty()) {
            const auto function = std::move(waiting.front());
            waiting.erase(waiting.begin());
            function();
        }
    }
};

ModalDialogs::ModalDialogs() : _state(std::make_shared<State>()) {}

ModalDialogs::~ModalDialogs()
{
    _state->isAlive = false;
}

bool ModalDialogs::any() const
{
    return _state->count > 0;
}

void ModalDialogs::whenClosed(std::function<void()> function)
{
    if (any())
        _state->waiting.push_back(std::move(function));
    else
        function();
}

void ModalDialogs::later(std::function<void()> function)
{
    const auto call = [state = _state, function = std::move(function)] {
        if (state->isAlive)
            function();
    };
    Glib::signal_idle().connect_once(call, priority);
}

ModalDialogs::Scope::Scope(const ModalDialogs& dialogs) : _state(dialogs._state)
{
    ++_state->count;
}

ModalDialogs::Scope::~Scope()
{
    // The stack has to unwind before anything that has waited happens.
    if (--_state->count == 0 && !_state->waiting.empty())
        Glib::signal_idle().connect_once([state = _state] { state->runWaiting(); }, priority);
}

} // namespace KesProgram
