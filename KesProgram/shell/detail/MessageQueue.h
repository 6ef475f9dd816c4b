#pragma once

#include <functional>
#include <memory>
#include <string>

namespace KesProgram {

/// The texts on their way to the user, shown one after the other. A text that is waiting or being shown
/// is not taken in again, so what a device repeats all the time is shown once. Owned by the base presenter.
class MessageQueue {
public:
    MessageQueue();
    ~MessageQueue();
    MessageQueue(const MessageQueue&) = delete;
    MessageQueue& operator=(const MessageQueue&) = delete;

    /// Any thread. False when the text is waiting or being shown.
    bool add(const std::string& text);

    /// GUI thread. Calls the function, which returns when the user has closed the box, for each text. Nothing
    /// when it is under way already: that call shows the later texts too. The queue may die meanwhile.
    void showAll(const std::function<void(const std::string&)>& show);

private:
    struct State;
    std::shared_ptr<State> _state;
};

} // namespace KesProgram
