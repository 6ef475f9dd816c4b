#pragma once

#include <KesCommonView/DialogBackend.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace KesTest {

/// The user of a test: while it lives, every message box and file dialog is recorded and answered from a
/// list instead of being shown. A dialog for which no answer is listed fails the test and is declined; so
/// does one with the signals' gate, an answer that is not among the buttons, and one left over at the end.
/// GUI thread.
class ScriptedDialogs {
public:
    ScriptedDialogs();
    ~ScriptedDialogs();
    ScriptedDialogs(const ScriptedDialogs&) = delete;
    ScriptedDialogs& operator=(const ScriptedDialogs&) = delete;

    /// The answer to the next message box for which none is listed yet. `during` runs while the box is
    /// "open", for what happens behind a dialog's back.
    void answer(Kes::DialogResult button, std::function<void()> during = {});
    /// The path chosen in the next file dialog; empty: it is cancelled.
    void answerFile(std::string path);

    /// All message boxes so far, oldest first.
    const std::vector<Kes::MessageRequest>& getMessages() const { return _messages; }
    /// All file dialogs so far, oldest first.
    const std::vector<Kes::FileRequest>& getFiles() const { return _files; }
    /// The texts of all message boxes so far.
    std::vector<std::string> getTexts() const;
    /// Forgets what has been recorded; listed answers stay.
    void clear();

private:
    class Backend;

    std::vector<Kes::MessageRequest> _messages;
    std::vector<Kes::FileRequest> _files;
    std::deque<std::pair<Kes::DialogResult, std::function<void()>>> _buttons;
    std::deque<std::string> _paths;
    std::unique_ptr<Kes::DialogBackend> _previous;
};

} // namespace KesTest
