#pragma once

#include <KesCommonView/DialogBackend.h>

#include <string>
#include <vector>

namespace Kes {

/// For a program that runs without a user: messages and questions go to standard error with the answer, in
/// UTF-8 whatever the locale. Questions get their declining answer, file dialogs are cancelled, and nothing
/// waits. Installed with `DialogBackend::install`. GUI thread.
class KES_EXPORT UnattendedDialogs : public DialogBackend {
public:
    DialogResult showMessage(const MessageRequest& request) override;
    std::string chooseFile(const FileRequest& request) override;
    bool hasUser() const override { return false; }

    /// The texts of the last 100 messages and questions, oldest first, so that the program can report why
    /// it failed. Those of file dialogs are not among them.
    const std::vector<std::string>& getTexts() const { return _texts; }

private:
    std::vector<std::string> _texts;
};

} // namespace Kes
