#pragma once

#include <KesCommonView/DialogResult.h>
#include <KesCommonView/IView.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Kes {

/// What a message box or question shows.
struct MessageRequest {
    /// The view whose window the box lies over; null: none.
    IView* parent = nullptr;
    std::string text;
    /// Empty: the program's name.
    std::string title;
    DialogResult buttons = DialogResult::Ok;
    /// Called repeatedly while the box is open: once it returns true there is nothing left to answer, and the
    /// box closes by itself. Null: never.
    std::function<bool()> isVoid{};
};

/// What a file dialog shows; each filter is a pattern such as "*.abc" and its label.
struct FileRequest {
    IView* parent = nullptr;
    std::string title;
    std::vector<std::pair<std::string, std::string>> filters;
    /// To write a file; else to read one.
    bool save = false;
    /// The path that is offered when saving, of the kind of the first filter; empty: none.
    std::string suggestion{};
};

/// The way by which all modal dialogs reach the user. GUI thread.
///
/// A program uses GTK's boxes unless it installs something else: an unattended run prints to standard
/// error and declines, a test answers from a script.
class KES_EXPORT DialogBackend {
public:
    virtual ~DialogBackend();

    /// Returns the pressed button, or the declining answer when the box was closed otherwise.
    virtual DialogResult showMessage(const MessageRequest& request) = 0;
    /// Returns the chosen path, empty when the user cancelled.
    virtual std::string chooseFile(const FileRequest& request) = 0;
    /// Shows the text until `isOver`, which is called repeatedly, returns true; false when the user has
    /// cancelled before. Default: returns true at once, without a user.
    virtual bool showWaiting(const MessageRequest& request, const std::function<bool()>& isOver);

    /// Whether there is a user to answer; without one, ask only what must not happen without a question.
    virtual bool hasUser() const { return true; }

    static DialogBackend& get();
    /// Makes `backend` the one in use (null: GTK's boxes) and returns the previous one.
    static std::unique_ptr<DialogBackend> install(std::unique_ptr<DialogBackend> backend);
};

} // namespace Kes
