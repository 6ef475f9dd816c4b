#include "ScriptedDialogs.h"

#include <KesCommon/SignalGate.h>

#include <gtest/gtest.h>

#include <utility>

namespace KesTest {

class ScriptedDialogs::Backend : public Kes::DialogBackend {
public:
    explicit Backend(ScriptedDialogs& script) : _script(script) {}

    Kes::DialogResult showMessage(const Kes::MessageRequest& request) override
    {
        expectNoGate();
        _script._messages.push_back(request);
        if (_script._buttons.empty()) {
            ADD_FAILURE() << "unexpected message box: " << request.text;
            return Kes::decliningAnswer(request.buttons);
        }
        const auto [answer, during] = std::move(_script._buttons.front());
        _script._buttons.pop_front();
        if (during)
            during();
        if (!Kes::hasButton(request.buttons, answer)) {
            ADD_FAILURE() << "no such button in the message box: " << request.text;
            return Kes::decliningAnswer(request.buttons);
        }
        return answer;
    }

    std::string chooseFile(const Kes::FileRequest& request) override
    {
        expectNoGate();
        _script._files.push_back(request);
        if (_script._paths.empty()) {
            ADD_FAILURE() << "unexpected file dialog: " << request.title;
            return {};
        }
        const auto path = std::move(_script._paths.front());
        _script._paths.pop_front();
        return path;
    }

private:
    static void expectNoGate()
    {
        EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread()) << "other threads wait for the user";
    }

    ScriptedDialogs& _script;
};

ScriptedDialogs::ScriptedDialogs() : _previous(Kes::DialogBackend::install(std::make_unique<Backend>(*this)))
{}

ScriptedDialogs::~ScriptedDialogs()
{
    Kes::DialogBackend::install(std::move(_previous));
    EXPECT_TRUE(_buttons.empty()) << "an expected message box was not shown";
    EXPECT_TRUE(_paths.empty()) << "an expected file dialog was not shown";
}

void ScriptedDialogs::answer(Kes::DialogResult button, std::function<void()> during)
{
    _buttons.emplace_back(button, std::move(during));
}

void ScriptedDialogs::answerFile(std::string path)
{
    _paths.push_back(std::move(path));
}

std::vector<std::string> ScriptedDialogs::getTexts() const
{
    std::vector<std::string> texts;
    for (const auto& message : _messages)
        texts.push_back(message.text);
    return texts;
}

void ScriptedDialogs::clear()
{
    _messages.clear();
    _files.clear();
}

} // namespace KesTest
