#pragma once

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <string>

namespace KesTree {

/// One value with its name and editor. GUI thread.
class KES_EXPORT INodeValueView : public Kes::IView {
public:
    /// The user has changed the text, perhaps not for the last time.
    sigc::signal<void(const std::string&)> signalEdited;
    /// The user has finished editing: has pressed Enter or gone elsewhere.
    sigc::signal<void()> signalFinished;
    /// The user wants the value back with which the editing began.
    sigc::signal<void()> signalRestored;

    /// The value in the editor; without a signal.
    virtual void setText(const std::string& text) = 0;
    /// What is said beside the editor while there is no problem, such as the range.
    virtual void setHint(const std::string& hint) = 0;
    /// Why the text in the editor is not accepted; empty when it is.
    virtual void setProblem(const std::string& problem) = 0;
    /// A value that is out of use is shown, but not edited.
    virtual void setIsUsed(bool used) = 0;
    /// The text can still be selected and copied.
    virtual void setIsReadOnly(bool readOnly) = 0;
};

} // namespace KesTree
