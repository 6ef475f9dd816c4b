#include <KesProgram/shell/detail/ModalDialogs.h>

#include <KesCommonView/OpenDialogs.h>

#include <glibmm/main.h>

#include <utility>
#include <vector>

namespace KesProgram {

namespace {

/// That of the dispatcher's queue, so that a flood of posts does not keep a message from the user.
constexpr int priority = 125;

} // namespace

struct ModalDialogs::State {
    bool isAlive = true;
    std::vector<std::function<void()>> waiting;

    /// A function may open the next dialog, or end the life of the owner.
    void runWaiting()
    {
        while (isAlive && !Kes::OpenDialogs::any() && !waiting.empty()) {
            const auto function = std::move(waiting.front());
            waiting.erase(waiting.begin());
            function();
        }
    }
};

ModalDialogs::ModalDialogs()
    : _state(std::make_shared<State>()),
      _allClosed(Kes::OpenDialogs::signalAllClosed().connect([state = _state] {
          // The stack has to unwind before anything that has waited happens.
          if (!state->waiting.empty())
              Glib::signal_idle().connect_once([state] { state->runWaiting(); }, priority);
      }))
{}

ModalDialogs::~ModalDialogs()
{
    _allClosed.disconnect();
    _state->isAlive = false;
}

void ModalDialogs::whenClosed(std::function<void()> function)
{
    if (Kes::OpenDialogs::any())
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

} // namespace KesProgram
