#pragma once

#include <KesCommonView/DialogBackend.h>

namespace Kes {

/// The boxes of GTK, with captions in the language of the process. GUI thread.
///
/// Every box is modal over the window of its parent view. Its default button, Escape and its close button
/// give the declining answer; its text can be selected and copied. Each call runs a main loop of its own.
class KES_EXPORT GtkDialogs : public DialogBackend {
public:
    DialogResult showMessage(const MessageRequest& request) override;
    std::string chooseFile(const FileRequest& request) override;
    bool showWaiting(const MessageRequest& request, const std::function<bool()>& isOver) override;

    /// Closes all that are open, as their close buttons do. They are gone when the functions that have shown
    /// them have returned.
    static void dismissAll();
};

} // namespace Kes
