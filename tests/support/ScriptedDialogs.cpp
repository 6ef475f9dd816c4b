#include "ScriptedDialogs.h"

#include <gtest/gtest.h>

#include <deque>
#include <utility>

namespace KesTest {

struct ScriptedDialogs::Script {
    template <typename T>
    struct Answer {
        T value;
        std::function<void()> during;
    };

    std::vector<Kes::MessageRequest> messages;
    std::vector<Kes::FileRequest> files;
    std::deque<Answer<Kes::DialogResult>> buttons;
    std::deque<Answer<std::string>> paths;
};

class ScriptedDialogs::Backend : public Kes::DialogBackend {
public:
    explicit Backend(std::shared_ptr<Script> script) : _script(std::move(script)) {}

    Kes::DialogResult showMessage(const Kes::MessageRequest& request) override
    {
        _script->messages.push_back(request);
        if (_script->buttons.empty()) {
            ADD_FAILURE() << "unexpected message box: " << request.text;
            return Kes::decliningAnswer(request.buttons);
        }
        const auto answer = _take(_script->buttons);
        if (!Kes::hasButton(request.buttons, answer)) {
            ADD_FAILURE() << "no such button in the message box: " << request.text;
            return Kes::decliningAnswer(request.buttons);
        }
        return answer;
    }

    std::string chooseFile(const Kes::FileRequest& request) override
    {
        _script->files.push_back(request);
        if (_script->paths.empty()) {
            ADD_FAILURE() << "unexpected file dialog: " << request.title;
            return {};
        }
        return _take(_script->paths);
    }

private:
    template <typename T>
    static T _take(std::deque<Script::Answer<T>>& answers)
    {
        const auto answer = std::move(answers.front());
        answers.pop_front();
        if (answer.during)
            answer.during();
        return answer.value;
    }

    std::shared_ptr<Script> _script;
};

ScriptedDialogs::ScriptedDialogs()
    : _script(std::make_shared<Script>()),
      _previous(Kes::DialogBackend::install(std::make_unique<Backend>(_script)))
{}

ScriptedDialogs::~ScriptedDialogs()
{
    Kes::DialogBackend::install(std::move(_previous));
    EXPECT_TRUE(_script->buttons.empty()) << "an expected message box was not shown";
    EXPECT_TRUE(_script->paths.empty()) << "an expected file dialog was not shown";
}

void ScriptedDialogs::answer(Kes::DialogResult button, std::function<void()> during)
{
    _script->buttons.push_back({button, std::move(during)});
}

void ScriptedDialogs::answerFile(std::string path, std::function<void()> during)
{
    _script->paths.push_back({std::move(path), std::move(during)});
}

const std::vector<Kes::MessageRequest>& ScriptedDialogs::getMessages() const
{
    return _script->messages;
}

const std::vector<Kes::FileRequest>& ScriptedDialogs::getFiles() const
{
    return _script->files;
}

std::vector<std::string> ScriptedDialogs::getTexts() const
{
    std::vector<std::string> texts;
    for (const auto& message : _script->messages)
        texts.push_back(message.text);
    return texts;
}

void ScriptedDialogs::clear()
{
    _script->messages.clear();
    _script->files.clear();
}

} // namespace KesTest
