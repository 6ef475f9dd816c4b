#include <KesProgram/shell/detail/MessageQueue.h>

#include <algorithm>
#include <deque>
#include <mutex>
#include <optional>

namespace KesProgram {

struct MessageQueue::State {
    std::mutex mutex;
    /// The first one is the one being shown.
    std::deque<std::string> texts;
    bool isShowing = false;

    std::optional<std::string> getFirst()
    {
        std::lock_guard lock(mutex);
        return texts.empty() ? std::nullopt : std::optional(texts.front());
    }

    void removeFirst()
    {
        std::lock_guard lock(mutex);
        if (!texts.empty())
            texts.pop_front();
    }
};

MessageQueue::MessageQueue() : _state(std::make_shared<State>()) {}

MessageQueue::~MessageQueue()
{
    std::lock_guard lock(_state->mutex);
    _state->texts.clear();
}

bool MessageQueue::add(const std::string& text)
{
    std::lock_guard lock(_state->mutex);
    auto& texts = _state->texts;
    if (std::find(texts.begin(), texts.end(), text) != texts.end())
        return false;
    texts.push_back(text);
    return true;
}

void MessageQueue::showAll(const std::function<void(const std::string&)>& show)
{
    const auto state = _state;
    if (state->isShowing)
        return;
    struct Showing {
        State& state;
        explicit Showing(State& s) : state(s) { state.isShowing = true; }
        ~Showing()
        {
            state.isShowing = false;
            state.removeFirst();
        }
    };
    while (const auto text = state->getFirst()) {
        const Showing showing(*state);
        show(*text);
    }
}

} // namespace KesProgram
